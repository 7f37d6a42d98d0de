#include "processing/RenamePanel.h"

#include "foundation/UserPrompt.h"
#include "rename/CaptureDateName.h"
#include "rename/RenameRule.h"

#include <QDateTime>

#include <QCoreApplication>

namespace tagmoor {

namespace {

RenamePosition positionOfRow(int row) {
    return row == 0 ? RenamePosition::beforeName : RenamePosition::afterName;
}

} // namespace

void RenamePanel::open(const QString& baseName, const QString& extension) {
    m_base = baseName;
    m_extension = extension;
    if (m_isOpened)
        return;
    m_temp = m_live;
    m_isOpened = true;
}

RenamePanel::Option RenamePanel::option() const {
    // The options are listed in the order of the rule's choices.
    return Option(m_live.choice().index());
}

void RenamePanel::clickOption(Option option) {
    // Choosing the option that is on keeps its values; any other starts from its defaults.
    if (option == this->option())
        return;
    switch (option) {
    case Option::keep:
        m_live = KeepOriginalName{};
        break;
    case Option::add:
        m_live = AddText{};
        break;
    case Option::replace:
        m_live = ReplaceText{};
        break;
    case Option::format:
        m_live = ChangeFileNameFormat{};
        break;
    case Option::capture:
        m_live = CaptureDateName{};
        break;
    }
}

// The inputs of an option that is off are disabled, so a value for it has nowhere to go.
void RenamePanel::setAddText(const QString& text) {
    if (auto* add = m_live.as<AddText>())
        add->addTextValueAT = text;
}
void RenamePanel::setAddPosition(int row) {
    if (auto* add = m_live.as<AddText>())
        add->addTextPositionAT = positionOfRow(row);
}
void RenamePanel::setFindText(const QString& text) {
    if (auto* replace = m_live.as<ReplaceText>())
        replace->findTextRT = text;
}
void RenamePanel::setReplaceWith(const QString& text) {
    if (auto* replace = m_live.as<ReplaceText>())
        replace->replaceWithRT = text;
}
void RenamePanel::setWhereRow(int row) {
    if (auto* format = m_live.as<ChangeFileNameFormat>())
        format->whereTextPositionNF = positionOfRow(row);
}
void RenamePanel::setCustomFormat(const QString& text) {
    if (auto* format = m_live.as<ChangeFileNameFormat>())
        format->customFormatValueNF = text;
}
void RenamePanel::setCapturePattern(const QString& text) {
    if (auto* capture = m_live.as<CaptureDateName>())
        capture->captureDatePatternCD = text;
}
void RenamePanel::setMinDigitsRow(int row) {
    if (auto* format = m_live.as<ChangeFileNameFormat>())
        format->minNumberDigitsNF = std::clamp(row, 0, 7);
}

void RenamePanel::setNameFormatRow(int row) {
    if (auto* format = m_live.as<ChangeFileNameFormat>())
        format->nameFormatNF = row == 1   ? NameFormat::nameAndCounter()
                               : row == 2 ? NameFormat::nameAndDate()
                                          : NameFormat::nameAndIndex();
}

int RenamePanel::nameFormatRow() const {
    const auto* format = m_live.as<ChangeFileNameFormat>();
    switch (format ? format->nameFormatNF.kind : NameFormat::Case::nameAndIndex) {
    case NameFormat::Case::nameAndCounter:
        return 1;
    case NameFormat::Case::nameAndDate:
        return 2;
    case NameFormat::Case::nameAndIndex:
        break;
    }
    return 0;
}

QString RenamePanel::setStartNumberText(const QString& text) {
    auto* format = m_live.as<ChangeFileNameFormat>();
    if (text.trimmed().isEmpty()) {
        if (format)
            format->startNumberAtNF = 1;
        return QStringLiteral("1");
    }
    // The field takes any number as typed (a sign or a decimal point included); its integer
    // value is what counts.
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (ok && format)
        format->startNumberAtNF = qint64(value);
    return text;
}

RenamePanel::FormatEnabled RenamePanel::formatEnabled() const {
    if (!m_live.is<ChangeFileNameFormat>())
        return {};
    switch (nameFormatRow()) {
    case 1:
        return {true, true, true};
    case 2:
        return {true, false, false};
    default:
        return {true, false, true};
    }
}

QString RenamePanel::example(Option which) const {
    if (which != option() || which == Option::keep)
        return QCoreApplication::translate("RenamePanel", "Example:");
    // The capture date of a photo is known only in the run: the example shows this moment.
    const auto* capture = m_live.as<CaptureDateName>();
    const QString base =
        capture ? captureDateName(capture->captureDatePatternCD, QDateTime::currentDateTime())
                : exampleBase(m_live, m_base);
    return QCoreApplication::translate("RenamePanel", "Example: ") + base + QStringLiteral(".") +
           m_extension;
}

bool RenamePanel::clickNext(UserPrompt& prompt, bool& overwriteExisting, bool overwriteStored) {
    const Option chosen = option();
    if (chosen == Option::keep) {
        m_isOpened = false;
        return true;
    }
    if (const auto* add = m_live.as<AddText>(); add && add->addTextValueAT.isEmpty()) {
        prompt.ask(
            Alert::ok(QCoreApplication::translate("RenamePanel", "'Add Text' textfield is empty"),
                      QCoreApplication::translate("RenamePanel", "'Add Text' textfield is empty")));
        return false;
    }
    if (const auto* replace = m_live.as<ReplaceText>(); replace && replace->findTextRT.isEmpty()) {
        prompt.ask(
            Alert::ok(QCoreApplication::translate("RenamePanel", "'Find' textfield is empty"),
                      QCoreApplication::translate("RenamePanel", "'Find' textfield is empty")));
        return false;
    }
    // A new name is one file name: a text holding "/" would make or leave a folder.
    if (const auto refused = refusedRenameText(m_live)) {
        prompt.ask(Alert::ok(
            QCoreApplication::translate("RenamePanel", "The name can not hold \"/\""), *refused));
        return false;
    }
    if (const auto* capture = m_live.as<CaptureDateName>()) {
        if (const auto refused = refusedCaptureDatePattern(capture->captureDatePatternCD)) {
            prompt.ask(Alert::ok(
                QCoreApplication::translate("RenamePanel", "The date pattern can not make names"),
                *refused));
            return false;
        }
        // Names from the capture date take a counter rather than a file's place.
        m_isOpened = false;
        return true;
    }
    if (!overwriteExisting && !overwriteStored) {
        const Alert question{
            QCoreApplication::translate(
                "RenamePanel",
                "Overwrite if a file exists with the same name in the destination folder."),
            QString(),
            {QCoreApplication::translate("RenamePanel", "Overwrite"),
             QCoreApplication::translate("RenamePanel", "Do not Overwrite")}};
        if (prompt.ask(question) == 0)
            overwriteExisting = true;
    }
    m_isOpened = false;
    return true;
}

void RenamePanel::clickClose() {
    m_live = m_temp;
    m_isOpened = false;
}

} // namespace tagmoor
