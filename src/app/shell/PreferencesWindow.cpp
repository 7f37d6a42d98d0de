#include "app/shell/PreferencesWindow.h"

#include "extras/CopiesInStep.h"
#include "foundation/Settings.h"
#include "geo/MapTileNotices.h"
#include "geo/TileLoader.h"
#include "metadata/SidecarOptions.h"
#include "processing/SidecarSettings.h"
#include "shell/LaunchState.h"
#include "shell/LoginItem.h"
#include "workingset/SupportedExtensions.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>

namespace tagmoor {

namespace {

QLabel* caption(const QString& text) {
    auto* label = new QLabel(text);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

// An explanation under a check box, in lines of a fixed width. The tab pages take no height
// for their width from their contents, so the lines' height is given here, else the window
// is laid out one line tall for them.
QLabel* note(const QString& text) {
    constexpr int kWidth = 400;
    constexpr int kIndent = 22;
    auto* label = new QLabel(text);
    label->setWordWrap(true);
    label->setIndent(kIndent);
    label->setFixedWidth(kWidth);
    label->setMinimumHeight(label->heightForWidth(kWidth));
    return label;
}

} // namespace

PreferencesWindow::PreferencesWindow(Settings& settings, LoginItem& loginItem, LaunchState& state,
                                     QWidget* parent)
    : QWidget(parent, Qt::Window), m_settings(settings), m_loginItem(loginItem), m_state(state),
      m_tabs(new QTabWidget), m_launch(new QCheckBox), m_language(new QComboBox),
      m_overwrite(new QCheckBox), m_presetSaving(new QCheckBox), m_autoUpdate(new QCheckBox) {
    setObjectName(QStringLiteral("preferencesWindow"));
    setWindowTitle(tr("Preferences"));
    m_tabs->addTab(makeGeneralTab(), tr("General"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->setObjectName(QStringLiteral("btnClose"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QWidget::close);
    // Escape closes the window, as it closes a dialog.
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    escape->setContext(Qt::WindowShortcut);
    connect(escape, &QShortcut::activated, this, &QWidget::close);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->addWidget(m_tabs);
    layout->addWidget(buttons);

    connect(m_launch, &QCheckBox::clicked, this, &PreferencesWindow::clickedAutomatically);
    connect(m_overwrite, &QCheckBox::clicked, this,
            &PreferencesWindow::clickedOverwriteIfAFileWithASameName);
    connect(m_presetSaving, &QCheckBox::clicked, this,
            &PreferencesWindow::clickedShowPresetSettingInHome);
    reload();
}

QWidget* PreferencesWindow::makeGeneralTab() {
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("GeneralPreferences"));
    m_launch->setObjectName(QStringLiteral("btnLaunchAutomatically"));
    m_launch->setText(tr("Launch Tagmoor automatically at login"));
    m_language->setObjectName(QStringLiteral("comboBoxLanguage"));
    m_overwrite->setObjectName(QStringLiteral("btnOverwriteIfAFileWithASameName"));
    m_overwrite->setText(tr("Overwrite if a file with the same name exists"));
    m_presetSaving->setObjectName(QStringLiteral("btnShowPresetSavingSettingInHome"));
    m_presetSaving->setText(tr("Offer to save the settings as a preset after a run"));
    m_autoUpdate->setObjectName(QStringLiteral("btnAutoUpdate"));
    m_autoUpdate->setText(tr("Check for updates automatically"));
    m_autoUpdate->setEnabled(false);
    m_autoUpdate->setToolTip(
        tr("The way Tagmoor looks for updates is settled when it starts, and cannot be changed "
           "here in this version."));

    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(20, 18, 20, 18);
    layout->setSpacing(8);
    layout->addWidget(caption(tr("Application Settings")));
    layout->addWidget(m_launch);
    layout->addSpacing(10);
    layout->addWidget(caption(tr("Language Settings")));
    layout->addLayout(makeLanguageRow());
    layout->addLayout(makeAppearanceRow());
    layout->addSpacing(10);
    layout->addWidget(caption(tr("File Saving Preference")));
    layout->addWidget(m_overwrite);
    // The standard form is the default; the described one stays one click away.
    m_standardForm = new QCheckBox(tr("Write tags in their standard form"));
    m_standardForm->setObjectName(QStringLiteral("btnWriteTagsInStandardForm"));
    connect(m_standardForm, &QCheckBox::clicked, this, [this](bool on) {
        const ValueForm form = on ? ValueForm::standard : ValueForm::described;
        m_settings.setValueForm(form);
        setValueForm(form);
    });
    layout->addWidget(m_standardForm);
    auto* formNote =
        note(tr("When unticked, Tagmoor follows its classic rules: every listed tag is rewritten, "
                "absent numbers become zero, GPS seconds lose their fraction, only the last "
                "keyword is kept and date shifts wrap instead of carrying."));
    formNote->setObjectName(QStringLiteral("lblStandardFormNote"));
    layout->addWidget(formNote);
    layout->addLayout(makeMetadataRows());
    layout->addSpacing(10);
    layout->addWidget(caption(tr("Map")));
    m_mapTiles = new QCheckBox(tr("Load map tiles from the internet"));
    m_mapTiles->setObjectName(QStringLiteral("btnLoadMapTiles"));
    connect(m_mapTiles, &QCheckBox::clicked, this, &PreferencesWindow::clickedLoadMapTiles);
    layout->addWidget(m_mapTiles);
    auto* mapNote =
        note(tr("The maps ask a public tile server for the places of the photos shown, and keep "
                "the tiles in a cache on this computer. When unticked, the maps show the world "
                "outline only."));
    mapNote->setObjectName(QStringLiteral("lblMapTilesNote"));
    layout->addWidget(mapNote);
    m_clearMapCache = new QPushButton(tr("Clear map cache"));
    m_clearMapCache->setObjectName(QStringLiteral("btnClearMapCache"));
    connect(m_clearMapCache, &QPushButton::clicked, this, &PreferencesWindow::clickedClearMapCache);
    m_mapCacheState = new QLabel;
    m_mapCacheState->setObjectName(QStringLiteral("lblMapCacheState"));
    auto* cacheRow = new QHBoxLayout;
    cacheRow->setContentsMargins(22, 0, 0, 0);
    cacheRow->addWidget(m_clearMapCache);
    cacheRow->addWidget(m_mapCacheState, 1);
    layout->addLayout(cacheRow);
    layout->addSpacing(10);
    layout->addWidget(caption(tr("Notification")));
    layout->addWidget(m_presetSaving);
    layout->addSpacing(10);
    layout->addWidget(caption(tr("Update Setting")));
    layout->addWidget(m_autoUpdate);
    layout->addStretch(1);
    return page;
}

// Under the file saving boxes: how the copies of a value, sidecars and formats are handled.
QVBoxLayout* PreferencesWindow::makeMetadataRows() {
    m_copiesInStep = new QCheckBox(tr("Keep captions, creators and rights in step"));
    m_copiesInStep->setObjectName(QStringLiteral("btnCopiesInStep"));
    connect(m_copiesInStep, &QCheckBox::clicked, this, &PreferencesWindow::clickedCopiesInStep);
    m_sidecarWrite = new QComboBox;
    m_sidecarWrite->setObjectName(QStringLiteral("comboBoxSidecarWrite"));
    m_sidecarWrite->setAccessibleName(tr("XMP sidecar files"));
    const QStringList shown{tr("Never"), tr("Only where the photo cannot hold XMP"),
                            tr("Always, instead of the photo"), tr("Both the photo and a sidecar")};
    for (int i = 0; i < sidecarWriteNames().size(); ++i)
        m_sidecarWrite->addItem(shown.value(i, sidecarWriteNames()[i]), sidecarWriteNames()[i]);
    connect(m_sidecarWrite, &QComboBox::activated, this,
            [this](int row) { chosenSidecarWrite(m_sidecarWrite->itemData(row).toString()); });
    auto* sidecarLabel = new QLabel(tr("XMP sidecar files:"));
    sidecarLabel->setObjectName(QStringLiteral("lblSidecarWrite"));
    sidecarLabel->setBuddy(m_sidecarWrite);
    auto* sidecarRow = new QHBoxLayout;
    sidecarRow->addWidget(sidecarLabel);
    sidecarRow->addWidget(m_sidecarWrite, 1);
    m_classicOnly = new QCheckBox(tr("Accept only the classic file formats"));
    m_classicOnly->setObjectName(QStringLiteral("btnClassicExtensionsOnly"));
    connect(m_classicOnly, &QCheckBox::clicked, this,
            &PreferencesWindow::clickedClassicExtensionsOnly);

    auto* layout = new QVBoxLayout;
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(m_copiesInStep);
    layout->addWidget(note(tr("An edit of a caption, creator or rights is written to its Exif, "
                              "IPTC and XMP copies alike, and a photo shows the copy that "
                              "readers prefer. Applies to the photos added from now on.")));
    layout->addLayout(sidecarRow);
    layout->addWidget(m_classicOnly);
    layout->addWidget(note(tr("When ticked, HEIC, AVIF, JPEG XL, WebP, CR3 and RW2 photos are "
                              "not added.")));
    return layout;
}

// The language choice and the update box show what is in force but change nothing in this
// version, so they take no clicks, and say why.
QHBoxLayout* PreferencesWindow::makeLanguageRow() {
    m_language->setEnabled(false);
    m_language->setToolTip(tr("Tagmoor follows the desktop's language in this version: "
                              "English, or German where the desktop asks for it."));
    auto* selectLanguage = new QLabel(tr("Select Language:"));
    selectLanguage->setObjectName(QStringLiteral("lblSelectLanguage"));
    selectLanguage->setEnabled(false);
    selectLanguage->setToolTip(m_language->toolTip());
    auto* row = new QHBoxLayout;
    row->addWidget(selectLanguage);
    row->addWidget(m_language, 1);
    return row;
}

QHBoxLayout* PreferencesWindow::makeAppearanceRow() {
    m_appearance = new QComboBox;
    m_appearance->setObjectName(QStringLiteral("comboBoxAppearance"));
    m_appearance->addItem(tr("Follow the desktop"), QStringLiteral("system"));
    m_appearance->addItem(tr("Light"), QStringLiteral("light"));
    m_appearance->addItem(tr("Dark"), QStringLiteral("dark"));
    connect(m_appearance, &QComboBox::activated, this,
            [this](int row) { emit appearanceChosen(m_appearance->itemData(row).toString()); });
    auto* label = new QLabel(tr("Appearance:"));
    label->setObjectName(QStringLiteral("lblAppearance"));
    label->setBuddy(m_appearance);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_appearance, 1);
    return row;
}

void PreferencesWindow::reload() {
    m_language->clear();
    m_language->addItem(tr("English"));
    m_language->setCurrentIndex(0);
    const std::optional<bool> login = m_settings.loginStartStatus();
    m_launch->setChecked(login.value_or(false));
    if (login)
        m_loginItem.apply(*login);
    m_overwrite->setChecked(m_settings.isOverwriteIfAFileWithASameNameOrDefault());
    m_presetSaving->setChecked(m_settings.isPresetSavingSettingInHomeOrDefault());
    m_autoUpdate->setChecked(m_settings.autoCheckForUpdateOrDefault() == 1);
    m_standardForm->setChecked(valueForm() == ValueForm::standard);
    m_mapTiles->setChecked(m_settings.loadMapTilesFromInternetOrDefault());
    m_mapCacheState->clear();
    const int appearance =
        m_appearance->findData(m_settings.appearance().value_or(QStringLiteral("system")));
    m_appearance->setCurrentIndex(appearance < 0 ? 0 : appearance);
    m_copiesInStep->setChecked(copiesInStep());
    const int sidecar =
        m_sidecarWrite->findData(sidecarWriteNames()[int(sidecarOptionsFrom(m_settings).write)]);
    m_sidecarWrite->setCurrentIndex(std::max(0, sidecar));
    m_classicOnly->setChecked(onlyClassicExtensions());
}

void PreferencesWindow::clickedAutomatically(bool on) {
    m_settings.setLoginStartStatus(on);
    m_loginItem.apply(on);
}

void PreferencesWindow::clickedOverwriteIfAFileWithASameName(bool on) {
    m_settings.setIsOverwriteIfAFileWithASameName(on);
    m_state.isOverwriteIfAFileWithASameName = on;
}

void PreferencesWindow::clickedShowPresetSettingInHome(bool on) {
    m_settings.setIsPresetSavingSettingInHome(on);
}

void PreferencesWindow::clickedLoadMapTiles(bool on) {
    m_settings.setLoadMapTilesFromInternet(on);
    emit MapTileNotices::instance().loadingChanged(on);
}

void PreferencesWindow::clickedClearMapCache() {
    TileLoader::clearDiskCache(TileLoader::defaultCacheFolder());
    m_mapCacheState->setText(tr("The map cache is empty."));
}

void PreferencesWindow::clickedCopiesInStep(bool on) {
    m_settings.setCopiesInStep(on);
    tagmoor::setCopiesInStep(on);
}

void PreferencesWindow::chosenSidecarWrite(const QString& word) {
    m_settings.setSidecarWrite(word);
    applyProcessSidecarSettings(m_settings);
}

void PreferencesWindow::clickedClassicExtensionsOnly(bool on) {
    m_settings.setClassicExtensionsOnly(on);
    applyProcessSidecarSettings(m_settings);
}

} // namespace tagmoor
