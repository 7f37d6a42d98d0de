#pragma once

#include <QWidget>

class QLabel;

namespace tagmoor {

class LocationView;
class Settings;
class ThumbnailProvider;

// The top of the home screen's side pane: the picture of the photo last clicked, its path, and
// the location view below them.
class HomePreviewPane : public QWidget {
    Q_OBJECT
public:
    HomePreviewPane(ThumbnailProvider& thumbnails, const Settings& settings,
                    QWidget* parent = nullptr);

    void showPhoto(const QString& path);
    // No photo: the placeholder text, no path, an empty location view.
    void clear();
    // Gives the picture what the editor below can spare when the screen is this high.
    void fitToHeight(int screenHeight);
    LocationView* locationView() const { return m_locationView; }

private:
    void refreshPicture();
    // The side the picture is decoded at: the box in the screen's pixels.
    int pictureSide() const;

    ThumbnailProvider& m_thumbnails;
    QLabel* m_preview;
    QLabel* m_imageName;
    LocationView* m_locationView;
    QString m_path;
    int m_side = 0;
};

} // namespace tagmoor
