#pragma once

#include "extras/ExtraValues.h"

#include <QWidget>

#include <vector>

class QButtonGroup;
class QComboBox;
class QCompleter;
class QLabel;
class QLineEdit;
class QStringListModel;
class QTreeWidget;

namespace tagmoor {

class HomeSession;

// The keywords of the marked photos with the number of photos that have each, a remove button
// for each, and a field that adds a keyword, offering the keywords seen while typing.
class KeywordListSection : public QWidget {
    Q_OBJECT
public:
    explicit KeywordListSection(HomeSession& session, QWidget* parent = nullptr);

    // `fromSidecars`: how many of the photos have their keywords from an XMP sidecar.
    void setCounts(std::vector<KeywordCount> counts, int fromSidecars = 0);
    // Shows the session's added and removed keywords.
    void refresh();

private:
    void addTyped();
    void toggleRemoved(const QString& keyword);
    void dropAdded(const QString& keyword);
    void addRow(const QString& keyword, const QString& count, bool removed, bool added);

    HomeSession& m_session;
    std::vector<KeywordCount> m_counts;
    QTreeWidget* m_list;
    QLabel* m_source;
    QLineEdit* m_add;
    QStringListModel* m_completions;
};

// Rating (rejected, 0 to 5 stars) and colour label of the marked photos.
class RatingLabelSection : public QWidget {
    Q_OBJECT
public:
    explicit RatingLabelSection(HomeSession& session, QWidget* parent = nullptr);
    void refresh();

private:
    void clickedRating(int stars);
    void chosenLabel(int row);

    HomeSession& m_session;
    QButtonGroup* m_rating;
    QComboBox* m_label;
};

// The IPTC texts beyond the form and the people shown, one line each; an empty line leaves the
// photos' own value.
class ExtraTextsSection : public QWidget {
    Q_OBJECT
public:
    explicit ExtraTextsSection(HomeSession& session, QWidget* parent = nullptr);
    void refresh();

private:
    void edited();

    HomeSession& m_session;
    QList<QLineEdit*> m_texts;
    QLineEdit* m_persons;
};

// The fourth editor tab, "Keywords & More": what a run adds beyond the form's fields to every
// marked photo. The marked photos' keywords are read from their files on a worker thread when
// the marking changes while the tab is shown.
class KeywordsMorePanel : public QWidget {
    Q_OBJECT
public:
    explicit KeywordsMorePanel(HomeSession& session, QWidget* parent = nullptr);

    // The marked photos changed: their keywords are read again (now if shown, else when shown).
    void markedPhotosChanged();

signals:
    // The keywords of the marked photos are on show (tests wait for it).
    void keywordsShown();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void readKeywords();
    void refresh();

    HomeSession& m_session;
    KeywordListSection* m_keywords;
    RatingLabelSection* m_ratingLabel;
    ExtraTextsSection* m_texts;
    bool m_stale = true;
    int m_reading = 0;
};

} // namespace tagmoor
