#include "app/editor/KeywordsMorePanel.h"

#include "exchange/PhotoTemplates.h"
#include "extras/ExtraEdits.h"
#include "foundation/UserPrompt.h"
#include "metadata/ExtraTags.h"
#include "processing/HomeSession.h"
#include "workingset/WorkingSet.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QCompleter>
#include <QFormLayout>
#include <QFutureWatcher>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QStringListModel>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QtConcurrent>

namespace tagmoor {

namespace {

QLabel* sectionTitle(const QString& text) {
    auto* title = new QLabel(text);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    return title;
}

// The comma-separated names of a line, trimmed, the empty ones left out.
QStringList namesOf(const QString& line) {
    QStringList names;
    for (const QString& name : line.split(QLatin1Char(',')))
        if (!name.trimmed().isEmpty())
            names << name.trimmed();
    return names;
}

// The colour labels as shown, in the order of colourLabelNames(); the names written stay English.
constexpr const char* kShownColours[] = {
    QT_TRANSLATE_NOOP("tagmoor::RatingLabelSection", "Red"),
    QT_TRANSLATE_NOOP("tagmoor::RatingLabelSection", "Yellow"),
    QT_TRANSLATE_NOOP("tagmoor::RatingLabelSection", "Green"),
    QT_TRANSLATE_NOOP("tagmoor::RatingLabelSection", "Blue"),
    QT_TRANSLATE_NOOP("tagmoor::RatingLabelSection", "Purple"),
};

} // namespace

KeywordListSection::KeywordListSection(HomeSession& session, QWidget* parent)
    : QWidget(parent), m_session(session), m_list(new QTreeWidget), m_source(new QLabel),
      m_add(new QLineEdit), m_completions(new QStringListModel(this)) {
    m_list->setObjectName(QStringLiteral("treeKeywords"));
    m_list->setAccessibleName(tr("Keywords of the marked photos"));
    m_list->setColumnCount(3);
    m_list->setHeaderLabels({tr("Keyword"), tr("Photos"), QString()});
    m_list->setRootIsDecorated(false);
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
    m_list->header()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    m_list->setMinimumHeight(140);

    m_add->setObjectName(QStringLiteral("txtAddKeyword"));
    m_add->setAccessibleName(tr("Add a keyword"));
    m_add->setPlaceholderText(tr("Add a keyword (\"|\" between levels)"));
    auto* completer = new QCompleter(m_completions, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    completer->setFilterMode(Qt::MatchContains);
    m_add->setCompleter(completer);
    auto* add = new QPushButton(tr("Add"));
    add->setObjectName(QStringLiteral("btnAddKeyword"));
    add->setAccessibleName(tr("Add the keyword"));
    connect(add, &QPushButton::clicked, this, &KeywordListSection::addTyped);
    connect(m_add, &QLineEdit::returnPressed, this, &KeywordListSection::addTyped);

    auto* addRow = new QHBoxLayout;
    addRow->addWidget(m_add, 1);
    addRow->addWidget(add);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(sectionTitle(tr("Keywords")));
    layout->addWidget(m_list, 1);
    m_source->setObjectName(QStringLiteral("lblKeywordsSource"));
    m_source->setWordWrap(true);
    m_source->setForegroundRole(QPalette::PlaceholderText);
    m_source->hide();
    layout->addWidget(m_source);
    layout->addLayout(addRow);
}

void KeywordListSection::setCounts(std::vector<KeywordCount> counts, int fromSidecars) {
    m_counts = std::move(counts);
    m_source->setText(fromSidecars == 1
                          ? tr("The keywords of one photo come from its XMP sidecar.")
                          : tr("The keywords of %1 photos come from their XMP sidecars.")
                                .arg(QLocale().toString(fromSidecars)));
    m_source->setVisible(fromSidecars > 0);
    m_completions->setStringList(keywordCompletions(m_counts));
    refresh();
}

void KeywordListSection::refresh() {
    const ExtraEdits& edits = m_session.extraEdits();
    m_list->clear();
    for (const KeywordCount& count : m_counts)
        addRow(count.keyword, QString::number(count.photos),
               edits.removeKeywords.contains(count.keyword), false);
    for (const QString& keyword : edits.addKeywords)
        addRow(keyword, tr("new"), false, true);
}

void KeywordListSection::addRow(const QString& keyword, const QString& count, bool removed,
                                bool added) {
    auto* item = new QTreeWidgetItem(m_list, {keyword, count});
    QFont font = item->font(0);
    font.setStrikeOut(removed);
    font.setItalic(added);
    item->setFont(0, font);
    auto* button = new QToolButton;
    button->setObjectName(QStringLiteral("btnRemoveKeyword"));
    button->setAutoRaise(true);
    if (removed) {
        button->setText(tr("Keep"));
        button->setAccessibleName(tr("Keep the keyword %1").arg(keyword));
    } else {
        button->setText(QStringLiteral("\u2212"));
        button->setAccessibleName(tr("Remove the keyword %1").arg(keyword));
    }
    button->setToolTip(button->accessibleName());
    connect(button, &QToolButton::clicked, this,
            [this, keyword, added] { added ? dropAdded(keyword) : toggleRemoved(keyword); });
    m_list->setItemWidget(item, 2, button);
}

void KeywordListSection::addTyped() {
    const QString keyword = m_add->text().trimmed();
    if (keyword.isEmpty())
        return;
    ExtraEdits edits = m_session.extraEdits();
    if (!edits.addKeywords.contains(keyword))
        edits.addKeywords << keyword;
    edits.removeKeywords.removeAll(keyword);
    if (const QString refusal = extraEditsRefusal(edits); !refusal.isEmpty()) {
        m_session.objects().prompt.ask(Alert::ok(tr("Keyword not added"), refusal));
        return;
    }
    m_add->clear();
    m_session.setExtraEdits(edits);
}

void KeywordListSection::toggleRemoved(const QString& keyword) {
    ExtraEdits edits = m_session.extraEdits();
    if (!edits.removeKeywords.removeAll(keyword))
        edits.removeKeywords << keyword;
    m_session.setExtraEdits(edits);
}

void KeywordListSection::dropAdded(const QString& keyword) {
    ExtraEdits edits = m_session.extraEdits();
    edits.addKeywords.removeAll(keyword);
    m_session.setExtraEdits(edits);
}

RatingLabelSection::RatingLabelSection(HomeSession& session, QWidget* parent)
    : QWidget(parent), m_session(session), m_rating(new QButtonGroup(this)),
      m_label(new QComboBox) {
    // Not exclusive, so that a click on the chosen rating takes it back.
    m_rating->setExclusive(false);
    auto* stars = new QHBoxLayout;
    stars->setSpacing(2);
    for (int rating = kRejectedRating; rating <= kHighestRating; ++rating) {
        auto* button = new QToolButton;
        button->setCheckable(true);
        button->setObjectName(QStringLiteral("btnRating%1")
                                  .arg(rating < 0 ? QStringLiteral("X") : QString::number(rating)));
        if (rating == kRejectedRating) {
            button->setText(tr("Rejected"));
            button->setAccessibleName(tr("Rejected"));
        } else {
            button->setText(QString::number(rating) +
                            (rating == 0 ? QString() : QStringLiteral("\u2605")));
            button->setAccessibleName(rating == 1 ? tr("1 star") : tr("%1 stars").arg(rating));
        }
        button->setToolTip(button->accessibleName());
        m_rating->addButton(button, rating);
        stars->addWidget(button);
    }
    stars->addStretch(1);
    connect(m_rating, &QButtonGroup::idClicked, this, &RatingLabelSection::clickedRating);

    m_label->setObjectName(QStringLiteral("cmbLabel"));
    m_label->setAccessibleName(tr("Label"));
    m_label->addItem(tr("Unchanged"));
    m_label->addItem(tr("None"), QString());
    const auto names = colourLabelNames();
    for (std::size_t i = 0; i < names.size(); ++i)
        m_label->addItem(i < std::size(kShownColours) ? tr(kShownColours[i]) : names[i], names[i]);
    connect(m_label, &QComboBox::activated, this, &RatingLabelSection::chosenLabel);

    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(sectionTitle(tr("Rating and label")));
    form->addRow(tr("Rating:"), stars);
    form->addRow(tr("Label:"), m_label);
}

void RatingLabelSection::refresh() {
    const ExtraEdits& edits = m_session.extraEdits();
    for (QAbstractButton* button : m_rating->buttons())
        button->setChecked(edits.rating && m_rating->id(button) == *edits.rating);
    int row = 0;
    if (edits.label)
        row = std::max(1, m_label->findData(*edits.label));
    m_label->setCurrentIndex(row);
}

void RatingLabelSection::clickedRating(int stars) {
    ExtraEdits edits = m_session.extraEdits();
    if (edits.rating == stars)
        edits.rating.reset();
    else
        edits.rating = stars;
    m_session.setExtraEdits(edits);
    refresh();
}

void RatingLabelSection::chosenLabel(int row) {
    ExtraEdits edits = m_session.extraEdits();
    if (row <= 0)
        edits.label.reset();
    else
        edits.label = m_label->itemData(row).toString();
    m_session.setExtraEdits(edits);
}

ExtraTextsSection::ExtraTextsSection(HomeSession& session, QWidget* parent)
    : QWidget(parent), m_session(session), m_persons(new QLineEdit) {
    const QStringList labels{
        tr("Alt text:"),      tr("Extended description:"), tr("Event:"),
        tr("Usage terms:"),   tr("Credit line:"),          tr("Instructions:"),
        tr("Creator email:"), tr("Creator phone:"),        tr("Creator website:"),
        tr("Creator city:"),  tr("Creator country:")};
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    form->addRow(sectionTitle(tr("IPTC texts")));
    for (const ExtraTextRow& row : kExtraTextRows) {
        auto* line = new QLineEdit;
        const QString label = labels.value(int(row.text));
        line->setObjectName(QStringLiteral("txtExtra-") + QString::fromLatin1(row.option));
        line->setAccessibleName(label.chopped(1));
        line->setPlaceholderText(tr("Unchanged"));
        connect(line, &QLineEdit::textEdited, this, &ExtraTextsSection::edited);
        form->addRow(label, line);
        m_texts << line;
    }
    m_persons->setObjectName(QStringLiteral("txtPersons"));
    m_persons->setAccessibleName(tr("People shown"));
    m_persons->setPlaceholderText(tr("Names, separated by commas"));
    connect(m_persons, &QLineEdit::textEdited, this, &ExtraTextsSection::edited);
    form->addRow(tr("People shown:"), m_persons);
}

void ExtraTextsSection::refresh() {
    const ExtraEdits& edits = m_session.extraEdits();
    for (int i = 0; i < m_texts.size(); ++i) {
        const QString text = edits.texts[std::size_t(i)].value_or(QString());
        if (m_texts[i]->text() != text)
            m_texts[i]->setText(text);
    }
    if (namesOf(m_persons->text()) != edits.persons.value_or(QStringList()))
        m_persons->setText(edits.persons.value_or(QStringList()).join(QStringLiteral(", ")));
}

void ExtraTextsSection::edited() {
    ExtraEdits edits = m_session.extraEdits();
    for (int i = 0; i < m_texts.size(); ++i) {
        const QString text = m_texts[i]->text();
        edits.texts[std::size_t(i)] = text.isEmpty() ? std::nullopt : std::optional(text);
    }
    const QStringList names = namesOf(m_persons->text());
    edits.persons = names.isEmpty() ? std::nullopt : std::optional(names);
    m_session.setExtraEdits(edits);
}

KeywordsMorePanel::KeywordsMorePanel(HomeSession& session, QWidget* parent)
    : QWidget(parent), m_session(session), m_keywords(new KeywordListSection(session)),
      m_ratingLabel(new RatingLabelSection(session)), m_texts(new ExtraTextsSection(session)) {
    setObjectName(QStringLiteral("KeywordsMorePanel"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(12);
    layout->addWidget(m_keywords, 1);
    layout->addWidget(m_ratingLabel);
    layout->addWidget(m_texts);
    connect(&session, &HomeSession::extraEditsChanged, this, &KeywordsMorePanel::refresh);
    refresh();
}

void KeywordsMorePanel::refresh() {
    m_keywords->refresh();
    m_ratingLabel->refresh();
    m_texts->refresh();
}

void KeywordsMorePanel::markedPhotosChanged() {
    m_stale = true;
    if (isVisible())
        readKeywords();
}

void KeywordsMorePanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_stale)
        readKeywords();
}

void KeywordsMorePanel::readKeywords() {
    m_stale = false;
    const int reading = ++m_reading;
    const QStringList paths =
        PhotoTemplates::markedPhotos(m_session.objects().workingSet.workingImages());
    struct Reading {
        std::vector<KeywordCount> counts;
        int fromSidecars = 0;
    };
    auto* watcher = new QFutureWatcher<Reading>(this);
    connect(watcher, &QFutureWatcher<Reading>::finished, this, [this, watcher, reading] {
        watcher->deleteLater();
        // A later marking's reading replaces this one.
        if (reading != m_reading)
            return;
        Reading read = watcher->result();
        m_keywords->setCounts(std::move(read.counts), read.fromSidecars);
        emit keywordsShown();
    });
    watcher->setFuture(QtConcurrent::run([paths] {
        std::vector<ExtraValues> values;
        int fromSidecars = 0;
        for (const QString& path : paths) {
            if (auto read = readExtraValuesOf(path)) {
                fromSidecars += read->fromSidecar.keywords ? 1 : 0;
                values.push_back(std::move(*read));
            }
        }
        return Reading{keywordCounts(values), fromSidecars};
    }));
}

} // namespace tagmoor
