#include "app/workingset/HomePreviewPane.h"

#include "app/location/LocationView.h"
#include "app/workingset/ThumbnailProvider.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>

#include <algorithm>
#include <cmath>

namespace tagmoor {

namespace {

constexpr int kPreviewSide = 208;
// The picture's side on a short screen, and on a tall one.
constexpr int kSmallestSide = 96;
constexpr int kLargestSide = 176;

} // namespace

HomePreviewPane::HomePreviewPane(ThumbnailProvider& thumbnails, const Settings& settings,
                                 QWidget* parent)
    : QWidget(parent), m_thumbnails(thumbnails), m_preview(new QLabel), m_imageName(new QLabel),
      m_locationView(new LocationView(settings)) {
    setObjectName(QStringLiteral("homePreviewPane"));
    m_preview->setObjectName(QStringLiteral("imgViewPreview"));
    m_preview->setAlignment(Qt::AlignCenter);
    m_preview->setFrameShape(QFrame::StyledPanel);
    m_imageName->setObjectName(QStringLiteral("lblImageName"));
    m_imageName->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    m_imageName->setTextInteractionFlags(Qt::TextSelectableByMouse);

    // The picture and the map side by side, the path under both: the editor below gets the
    // height.
    auto* layout = new QGridLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setHorizontalSpacing(10);
    layout->setVerticalSpacing(6);
    layout->addWidget(m_preview, 0, 0, Qt::AlignTop);
    layout->addWidget(m_locationView, 0, 1, Qt::AlignTop);
    layout->addWidget(m_imageName, 1, 0, 1, 2);
    layout->setColumnStretch(1, 1);

    connect(&thumbnails, &ThumbnailProvider::thumbnailReady, this,
            [this](const QString& path, int side) {
                if (path == m_path && (side == pictureSide() || side == 0))
                    refreshPicture();
            });
    clear();
    m_preview->setForegroundRole(QPalette::PlaceholderText);
}

void HomePreviewPane::showPhoto(const QString& path) {
    m_path = path;
    // One line: the middle of a long path gives way, the whole path is in the tooltip.
    m_imageName->setText(
        m_imageName->fontMetrics().elidedText(m_path, Qt::ElideMiddle, m_imageName->width() - 4));
    m_imageName->setToolTip(m_path);
    refreshPicture();
}

void HomePreviewPane::clear() {
    m_path.clear();
    m_preview->clear();
    m_preview->setText(tr("No photo selected"));
    m_imageName->clear();
    m_imageName->setToolTip(QString());
    m_locationView->clear();
}

void HomePreviewPane::fitToHeight(int screenHeight) {
    // A short screen gives the picture less, down to a small square, so that the editor keeps
    // its rows.
    const int side = std::clamp((screenHeight - 560) / 2, kSmallestSide, kLargestSide);
    if (side == m_side)
        return;
    m_side = side;
    m_preview->setFixedSize(side + 16, side + 16);
    if (!m_path.isEmpty())
        refreshPicture();
}

void HomePreviewPane::refreshPicture() {
    if (m_path.isEmpty()) {
        clear();
        return;
    }
    QImage image = m_thumbnails.thumbnail(m_path, pictureSide());
    if (image.isNull()) {
        m_preview->setText(QFileInfo(m_path).suffix().toUpper());
        return;
    }
    // In the screen's pixels: a scaled display gets as many as it shows.
    const qreal ratio = std::max(m_preview->devicePixelRatioF(), 1.0);
    const int side = int(std::ceil(m_side * ratio));
    if (std::max(image.width(), image.height()) > side)
        image = image.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    image.setDevicePixelRatio(ratio);
    m_preview->setPixmap(QPixmap::fromImage(image));
}

int HomePreviewPane::pictureSide() const {
    return int(std::ceil(kPreviewSide * std::max(m_preview->devicePixelRatioF(), 1.0)));
}

} // namespace tagmoor
