#include "processing/RenamePanel.h"

#include "foundation/UserPrompt.h"
#include "rename/CaptureDateName.h"
#include "rename/RenameRule.h"

#include <QDateTime>

#include <QCoreApplication>

namespace tagmoor {

namespace {

QString tr(const char* text) {
    return QCoreApplication::translate("RenamePanel", text);
}

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
    if (m_live.isAddText)
        return Option::add;
    if (m_live.isReplaceText)
        return Option::replace;
    if (m_live.isChangeFileNameFormat)
        return Option::format;
    if (m_live.isCaptureDateName)
        return Option::capture;
    return Option::keep;
}

void RenamePanel::clickOption(Option option) {
    const Rename defaults;
    Rename next = defaults;
    switch (option) {
    case Option::keep:
        break;
    case Option::add:
        next.isKeepOriginal = false;
        next.isAddText = true;
        next.addTextValueAT = m_live.addTextValueAT;
        next.addTextPositionAT = m_live.addTextPositionAT;
        break;
    case Option::replace:
        next.isKeepOriginal = false;
        next.isReplaceText = true;
        next.findTextRT = m_live.findTextRT;
        next.replaceWithRT = m_live.replaceWithRT;
        break;
    case Option::format:
        next.isKeepOriginal = false;
        next.isChangeFileNameFormat = true;
        next.nameFormatNF = m_live.nameFormatNF;
        next.whereTextPositionNF = m_live.whereTextPositionNF;
        next.customFormatValueNF = m_live.customFormatValueNF;
        next.startNumberAtNF = m_live.startNumberAtNF;
        next.minNumberDigitsNF = m_live.minNumberDigitsNF;
        break;
    case Option::capture:
        next.isKeepOriginal = false;
        next.isCaptureDateName = true;
        next.captureDatePatternCD = m_live.captureDatePatternCD;
        break;
    }
    m_live = next;
}

void RenamePanel::setAddText(const QString& text) {
    m_live.addTextValueAT = text;
}
void RenamePanel::setAddPosition(int row) {
    m_live.addTextPositionAT = positionOfRow(row);
}
void RenamePanel::setFindText(const QString& text) {
    m_live.findTextRT = text;
}
void RenamePanel::setReplaceWith(const QString& text) {
    m_live.replaceWithRT = text;
}
void RenamePanel::setWhereRow(int row) {
    m_live.whereTextPositionNF = positionOfRow(row);
}
void RenamePanel::setCustomFormat(const QString& text) {
    m_live.customFormatValueNF = text;
}
void RenamePanel::setCapturePattern(const QString& text) {
    m_live.captureDatePatternCD = text;
}
void RenamePanel::setMinDigitsRow(int row) {
    m_live.minNumberDigitsNF = std::clamp(row, 0, 7);
}

void RenamePanel::setNameFormatRow(int row) {
    m_live.nameFormatNF = row == 1   ? NameFormat::nameAndCounter()
                          : row == 2 ? NameFormat::nameAndDate()
                                     : NameFormat::nameAndIndex();
}

int RenamePanel::nameFormatRow() const {
    switch (m_live.nameFormatNF.kind) {
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
    if (text.trimmed().isEmpty()) {
        m_live.startNumberAtNF = 1;
        return QStringLiteral("1");
    }
    // The field takes any number as typed (a sign or a decimal point included); its integer
    // value is what counts.
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (ok)
        m_live.startNumberAtNF = qint64(value);
    return text;
}

RenamePanel::FormatEnabled RenamePanel::formatEnabled() const {
    if (!m_live.isChangeFileNameFormat)
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
        return tr("Example:");
    // The capture date of a photo is known only in the run: the example shows this moment.
    const QString base = which == Option::capture ? captureDateName(m_live.captureDatePatternCD,
                                                                    QDateTime::currentDateTime())
                                                  : exampleBase(m_live, m_base);
    return tr("Example: ") + base + QStringLiteral(".") + m_extension;
}

bool RenamePanel::clickNext(UserPrompt& prompt, bool& overwriteExisting) {
    const Option chosen = option();
    if (chosen == Option::keep) {
        m_isOpened = false;
        return true;
    }
    if (chosen == Option::add && m_live.addTextValueAT.isEmpty()) {
        prompt.ask(
            Alert::ok(tr("'Add Text' textfield is empty"), tr("'Add Text' textfield is empty")));
        return false;
    }
    if (chosen == Option::replace && m_live.findTextRT.isEmpty()) {
        prompt.ask(Alert::ok(tr("'Find' textfield is empty"), tr("'Find' textfield is empty")));
        return false;
    }
    // A new name is one file name: a text holding "/" would make or leave a folder.
    if (const auto refused = refusedRenameText(m_live)) {
        prompt.ask(Alert::ok(tr("The name can not hold \"/\""), *refused));
        return false;
    }
    if (chosen == Option::capture) {
        if (const auto refused = refusedCaptureDatePattern(m_live.captureDatePatternCD)) {
            prompt.ask(Alert::ok(tr("The date pattern can not make names"), *refused));
            return false;
        }
        // Names from the capture date take a counter rather than a file's place.
        m_isOpened = false;
        return true;
    }
    if (!overwriteExisting) {
        const Alert question{
            tr("Overwrite if a file exists with the same name in the destination folder."),
            QString(),
            {tr("Overwrite"), tr("Do not Overwrite")}};
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
