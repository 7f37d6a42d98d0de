#pragma once

#include "app/location/MapView.h"
#include "geo/MapProjection.h"
#include "model/CGImageProperties.h"
#include "model/Field.h"
#include "workingset/ThumbnailLoader.h"

#include <QFutureWatcher>
#include <QList>
#include <QWidget>

#include <optional>

class QButtonGroup;
class QLabel;
class QScrollArea;
class QStackedWidget;

namespace tagmoor {

class Settings;
class UserPrompt;

// The preview window of one photo: its picture (decoded on a worker thread, so the window is
// there at once), its file facts, its metadata in the three families of the editor, read only,
// and its position on a map. Title "Tagmoor - Preview". Closing only hides it: opened again,
// the window and its map are as they were, and it comes up centred on its parent's window.
// Its pin can be dragged and opened as the picker's can; that moves the preview's position
// and changes no metadata.
class PreviewViewController : public QWidget {
    Q_OBJECT
public:
    // The longest side the picture is decoded at, in device-independent pixels.
    static constexpr int kPictureSide = 450;

    PreviewViewController(const Settings& settings, UserPrompt& prompt, QWidget* parent = nullptr);
    ~PreviewViewController() override;

    // The photo on show; `updateValues` fills the window from it.
    void setImageProperties(const CGImageProperties& record);
    void updateValues();
    // The map routine shared with the picker: type, region of 1.0 by 1.0 degrees, one pin.
    void updateMapView(double latitude, double longitude, const QString& title,
                       const QString& subtitle, MapType type);
    void clickedSegmentControl(int index);
    // The pin was dropped by the user: the preview's position, not the photo's.
    void annotationDragEnded(double latitude, double longitude);
    void showMoreInfo();
    // 0 EXIF, 1 IPTC, 2 XMP.
    void clickedTab(int editor);

    // "4000.0 x 3000.0": both numbers in the default form of a double.
    static QString dimensionsText(double width, double height);

    float latitude() const { return m_latitude; }
    float longitude() const { return m_longitude; }
    const QList<PinAnnotation>& mapAnnotations() const { return m_mapAnnotations; }

signals:
    void pictureShown();

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QWidget* makeFacts();
    QWidget* makeMetadata();
    void fillMetadata();
    void pictureDecoded();
    void centreOnParentWindow();

    UserPrompt& m_prompt;
    std::optional<CGImageProperties> m_record;
    QLabel* m_picture;
    QLabel* m_name;
    QLabel* m_dimensions;
    QLabel* m_size;
    QLabel* m_path;
    MapView* m_map;
    QButtonGroup* m_segment = nullptr;
    QButtonGroup* m_tabs = nullptr;
    QStackedWidget* m_boxes = nullptr;
    QList<QPair<Field, QLabel*>> m_values;
    QList<PinAnnotation> m_mapAnnotations;
    float m_latitude = 0;
    float m_longitude = 0;
    MapRegion m_newRegion;
    QString m_picturePath;
    QFutureWatcher<ThumbnailResult> m_loader;
};

} // namespace tagmoor
