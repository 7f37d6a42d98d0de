#include "app/location/PreviewViewController.h"

#include "app/location/MapTypeSegment.h"
#include "app/location/PinCallout.h"
#include "app/widgets/GroupTabs.h"
#include "editor/FieldDisplay.h"
#include "editor/FormPopups.h"
#include "editor/FormSections.h"
#include "model/FormFieldTable.h"
#include "workingset/FileSizeText.h"
#include "workingset/ThumbnailLoader.h"

#include <QButtonGroup>
#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QShowEvent>
#include <QStackedWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtConcurrent/QtConcurrentRun>

#include <cmath>

namespace tagmoor {

namespace {

constexpr double kPreviewSpan = 1.0;

QLabel* makeCaption(const QString& objectName, const QString& text) {
    auto* label = new QLabel(text);
    label->setObjectName(objectName);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setAlignment(Qt::AlignRight | Qt::AlignTop);
    return label;
}

QLabel* makeValue(const QString& objectName) {
    auto* label = new QLabel;
    label->setObjectName(objectName);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setWordWrap(true);
    return label;
}

} // namespace

QString PreviewViewController::dimensionsText(double width, double height) {
    auto text = [](double v) {
        QString s = QString::number(v, 'g', 17);
        if (std::isfinite(v) && !s.contains(QLatin1Char('.')) && !s.contains(QLatin1Char('e')))
            s += QStringLiteral(".0");
        return s;
    };
    return text(width) + QStringLiteral(" x ") + text(height);
}

PreviewViewController::PreviewViewController(const Settings& settings, UserPrompt& prompt,
                                             QWidget* parent)
    : QWidget(parent, Qt::Window), m_prompt(prompt), m_picture(new QLabel),
      m_name(makeValue(QStringLiteral("lblName"))),
      m_dimensions(makeValue(QStringLiteral("lblDimensions"))),
      m_size(makeValue(QStringLiteral("lblSize"))), m_path(makeValue(QStringLiteral("lblPath"))),
      m_map(new MapView) {
    setObjectName(QStringLiteral("PreviewViewController"));
    resize(1040, 720);
    m_map->configureTiles(settings);
    connect(&m_loader, &QFutureWatcherBase::finished, this, &PreviewViewController::pictureDecoded);

    auto* left = new QVBoxLayout;
    left->setSpacing(10);
    auto* title = new QLabel(tr("Preview"));
    title->setObjectName(QStringLiteral("lblTitle"));
    QFont bold = title->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    title->setFont(bold);
    m_picture->setObjectName(QStringLiteral("imgView"));
    m_picture->setAlignment(Qt::AlignCenter);
    m_picture->setMinimumSize(kPictureSide, kPictureSide * 2 / 3);
    m_picture->setFrameShape(QFrame::StyledPanel);
    m_picture->setBackgroundRole(QPalette::Base);
    m_picture->setAutoFillBackground(true);
    left->addWidget(title);
    left->addWidget(m_picture, 3);
    left->addWidget(makeFacts());
    auto* viewRow = new QHBoxLayout;
    auto* viewLabel = new QLabel(tr("Location:"));
    viewLabel->setObjectName(QStringLiteral("lblView"));
    auto* segment = new MapTypeSegment(QStringLiteral("segmentControlGPS"));
    m_segment = segment->group();
    viewRow->addWidget(viewLabel);
    viewRow->addStretch(1);
    viewRow->addWidget(segment);
    left->addLayout(viewRow);
    m_map->setMinimumHeight(200);
    left->addWidget(m_map, 2);
    connect(m_segment, &QButtonGroup::idClicked, this,
            &PreviewViewController::clickedSegmentControl);
    connect(m_map, &MapView::annotationDragEnded, this,
            &PreviewViewController::annotationDragEnded);
    connect(m_map, &MapView::moreInfoClicked, this, &PreviewViewController::showMoreInfo);

    auto* columns = new QHBoxLayout;
    columns->setSpacing(16);
    columns->addLayout(left, 3);
    columns->addWidget(makeMetadata(), 2);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->setObjectName(QStringLiteral("buttonBox"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 14);
    layout->setSpacing(12);
    layout->addLayout(columns, 1);
    layout->addWidget(buttons);
}

PreviewViewController::~PreviewViewController() {
    m_loader.disconnect(this);
}

QWidget* PreviewViewController::makeFacts() {
    auto* box = new QWidget;
    auto* grid = new QGridLayout(box);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(10);
    grid->setVerticalSpacing(4);
    grid->addWidget(makeCaption(QStringLiteral("lblNameCap"), tr("Name:")), 0, 0);
    grid->addWidget(m_name, 0, 1);
    grid->addWidget(makeCaption(QStringLiteral("lblDimensionCap"), tr("Dimensions:")), 1, 0);
    grid->addWidget(m_dimensions, 1, 1);
    grid->addWidget(makeCaption(QStringLiteral("lblSizeCap"), tr("Size:")), 2, 0);
    grid->addWidget(m_size, 2, 1);
    grid->addWidget(makeCaption(QStringLiteral("lblPathCap"), tr("Path:")), 3, 0);
    grid->addWidget(m_path, 3, 1);
    grid->setColumnStretch(1, 1);
    return box;
}

QWidget* PreviewViewController::makeMetadata() {
    auto* panel = new QWidget;
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* info = new QLabel(tr("Metadata"));
    info->setObjectName(QStringLiteral("lblMetadataInfo"));
    QFont bold = info->font();
    bold.setBold(true);
    info->setFont(bold);
    layout->addWidget(info);

    auto* tabs = new QHBoxLayout;
    m_tabs = new QButtonGroup(panel);
    addGroupTabs(m_tabs, tabs);
    tabs->addStretch(1);
    layout->addLayout(tabs);
    connect(m_tabs, &QButtonGroup::idClicked, this, &PreviewViewController::clickedTab);

    m_boxes = new QStackedWidget;
    m_boxes->setObjectName(QStringLiteral("scrollView"));
    const QStringList boxNames{QStringLiteral("boxExif"), QStringLiteral("boxIPTC"),
                               QStringLiteral("boxXMP")};
    std::array<QFormLayout*, 3> forms{};
    for (int i = 0; i < 3; ++i) {
        auto* scroll = new QScrollArea;
        scroll->setObjectName(boxNames[i]);
        scroll->setWidgetResizable(true);
        scroll->setFrameShape(QFrame::StyledPanel);
        auto* content = new QWidget;
        forms[std::size_t(i)] = new QFormLayout(content);
        forms[std::size_t(i)]->setLabelAlignment(Qt::AlignRight);
        forms[std::size_t(i)]->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
        scroll->setWidget(content);
        m_boxes->addWidget(scroll);
    }
    for (const FormSection& section : formSections()) {
        QFormLayout* form = forms[std::size_t(section.editor)];
        auto* heading = new QLabel(QCoreApplication::translate("Form", section.title));
        heading->setObjectName(QString::fromLatin1(section.titleControl));
        QFont headingFont = heading->font();
        headingFont.setBold(true);
        heading->setFont(headingFont);
        heading->setContentsMargins(0, form->rowCount() > 0 ? 10 : 0, 0, 2);
        form->addRow(heading);
        for (const FormLine& line : section.lines) {
            auto* value = new QLabel;
            // "lblValueGPSLatitude": the row's value, named after its field.
            value->setObjectName(QStringLiteral("lblValue") + formField(line.field).name());
            value->setTextInteractionFlags(Qt::TextSelectableByMouse);
            value->setWordWrap(true);
            form->addRow(QCoreApplication::translate("Form", line.label) + QLatin1Char(':'), value);
            m_values.append({line.field, value});
        }
    }
    layout->addWidget(m_boxes, 1);
    return panel;
}

void PreviewViewController::clickedTab(int editor) {
    if (editor < 0 || editor > 2)
        return;
    m_boxes->setCurrentIndex(editor);
    m_tabs->button(editor)->setChecked(true);
}

void PreviewViewController::setImageProperties(const CGImageProperties& record) {
    m_record = record;
    if (isVisible())
        updateValues();
}

void PreviewViewController::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (!event->spontaneous())
        centreOnParentWindow();
    updateValues();
    setWindowTitle(tr("Tagmoor - Preview"));
}

void PreviewViewController::fillMetadata() {
    for (const auto& [shown, label] : std::as_const(m_values)) {
        const FormField& field = formField(shown);
        QString text;
        if (m_record) {
            if (field.kind == FormKind::Popup) {
                const int row = FieldDisplay::popupRow(*m_record, field);
                const QStringList rows = FormPopups::rowTexts(shown);
                text = row > FormPopups::kBlankRow && row < rows.size() ? rows[row] : QString();
            } else {
                text = FieldDisplay::text(*m_record, field);
            }
        }
        label->setText(text);
    }
}

void PreviewViewController::updateValues() {
    if (!m_record)
        return;
    fillMetadata();
    const QString path = m_record->path();
    if (!path.isEmpty()) {
        const QFileInfo info(path);
        m_name->setText(info.fileName());
        m_path->setText(path);
        m_size->setText(info.exists() ? fileSizeText(std::uint64_t(info.size())) : QString());
        if (path != m_picturePath) {
            m_picturePath = path;
            m_picture->clear();
            m_picture->setText(tr("Loading\u2026"));
            const int side = int(std::ceil(kPictureSide * devicePixelRatioF()));
            m_loader.setFuture(QtConcurrent::run([path, side] {
                return ThumbnailLoader::load({path, side});
            }));
        }
    }
    const auto width = m_record->pixelWidth.number();
    const auto height = m_record->pixelHeight.number();
    if (width && height)
        m_dimensions->setText(dimensionsText(*width, *height));

    const auto& gps = m_record->gpsProperties;
    const auto lat = gps ? gps->latitude.real() : std::nullopt;
    const auto lon = gps ? gps->longitude.real() : std::nullopt;
    if (lat && lon) {
        m_latitude = *lat;
        m_longitude = *lon;
    }
    updateMapView(m_latitude, m_longitude, QString(), QString(),
                  mapTypeOfSegment(m_segment->checkedId()));
}

void PreviewViewController::pictureDecoded() {
    const ThumbnailResult result = m_loader.result();
    if (result.path != m_picturePath)
        return;
    m_picture->clear();
    if (!result.image.isNull()) {
        QImage image = result.image;
        image.setDevicePixelRatio(devicePixelRatioF());
        m_picture->setPixmap(QPixmap::fromImage(image));
    }
    emit pictureShown();
}

void PreviewViewController::updateMapView(double latitude, double longitude, const QString& title,
                                          const QString& subtitle, MapType type) {
    const PinAnnotation pin{latitude, longitude, title, subtitle};
    m_newRegion = m_map->showPin(pin, type, kPreviewSpan);
    m_mapAnnotations = {pin};
}

void PreviewViewController::clickedSegmentControl(int index) {
    updateMapView(m_latitude, m_longitude, QString(), QString(), mapTypeOfSegment(index));
}

void PreviewViewController::annotationDragEnded(double latitude, double longitude) {
    m_latitude = float(latitude);
    m_longitude = float(longitude);
    if (!m_mapAnnotations.isEmpty()) {
        m_mapAnnotations.first().latitude = latitude;
        m_mapAnnotations.first().longitude = longitude;
    }
}

void PreviewViewController::showMoreInfo() {
    tagmoor::showMoreInfo(m_prompt);
}

// Esc closes the window, as it does a dialog; the controls inside pass it on.
void PreviewViewController::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

// Each opening puts the window in the middle of its parent's window, kept on that screen
// where it fits.
void PreviewViewController::centreOnParentWindow() {
    const QWidget* owner = parentWidget() ? parentWidget()->window() : nullptr;
    if (!owner)
        return;
    QRect frame = frameGeometry();
    frame.moveCenter(owner->frameGeometry().center());
    if (const QScreen* screen = owner->screen()) {
        const QRect available = screen->availableGeometry();
        if (frame.width() <= available.width())
            frame.moveLeft(
                std::clamp(frame.left(), available.left(), available.right() - frame.width() + 1));
        if (frame.height() <= available.height())
            frame.moveTop(
                std::clamp(frame.top(), available.top(), available.bottom() - frame.height() + 1));
    }
    move(frame.topLeft());
}

} // namespace tagmoor
