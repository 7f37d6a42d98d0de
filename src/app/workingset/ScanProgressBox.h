#pragma once

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace tagmoor {

struct ScanProgressView;

// The progress box of a scan (boxLoader): the spinner while files are counted, then the bar
// and the percentage, the path being read, the counts, and the Stop button. It shows what it
// is given and nothing else.
class ScanProgressBox : public QFrame {
    Q_OBJECT
public:
    explicit ScanProgressBox(QWidget* parent = nullptr);

    void apply(const ScanProgressView& view);

    QPushButton* btnStopScanning() const { return m_stop; }
    // The path line before it was shortened to fit.
    const QString& pathText() const { return m_fullPath; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showPath();

    QLabel* m_title;
    QProgressBar* m_loader;
    QProgressBar* m_spinner;
    QLabel* m_percent;
    QLabel* m_path;
    QLabel* m_imagesSelected;
    QLabel* m_objectsSelected;
    QPushButton* m_stop;
    QString m_fullPath;
};

} // namespace tagmoor
