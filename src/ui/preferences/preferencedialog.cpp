#include "preferencedialog.h"
#include "ui_preferencedialog.h"

#include "processlauncher.h"

#include <QMessageBox>

PreferenceDialog::PreferenceDialog(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::PreferenceDialog)
{
    ui->setupUi(this);
}

PreferenceDialog::~PreferenceDialog()
{
    delete ui;
}

void PreferenceDialog::setProcessLauncher(ProcessLauncher *launcher)
{
    if (!launcher)
        return;
    m_launcher = launcher;
    for (QToolButton *ok : { ui->buttonOKApplication, ui->buttonOK, ui->buttonOKVersion })
        connect(ok, SIGNAL(clicked()), this, SLOT(okClicked()));
    for (QToolButton *cancel : { ui->buttonCancelApplication, ui->buttonCancel })
        connect(cancel, SIGNAL(clicked()), this, SLOT(cancelClicked()));
    for (QToolButton *apply : { ui->buttonApplyApplication, ui->buttonApply })
        connect(apply, SIGNAL(clicked()), this, SLOT(applyClicked()));
    connect(ui->checkBoxAllowAllVersions, SIGNAL(stateChanged(int)), this, SLOT(currentTabChanged()));
    connect(ui->comboLanguage, SIGNAL(currentIndexChanged(int)), this, SLOT(currentTabChanged()));

    bool showAll = false;
    m_launcher->getShowAllVersions(showAll);
    ui->checkBoxAllowAllVersions->setChecked(showAll);

    ui->comboLanguage->addItem(tr("English"), QStringLiteral("en_US"));
    ui->comboLanguage->addItem(tr("Japanese"), QStringLiteral("ja_JP"));
    QString locale;
    m_launcher->getLocale(locale);
    // An unknown locale shows no language at all.
    ui->comboLanguage->setCurrentIndex(
        ui->comboLanguage->findData(locale, Qt::UserRole, Qt::MatchExactly | Qt::MatchCaseSensitive));

    QString applName;
    QString version;
    m_launcher->getLauncherNameAndVersion(applName, version);
    ui->labelVersionInfo->setText(tr("Vorlix Zanmir Version %1").arg(version));

    // Last: filling the settings above has enabled them through the connections.
    ui->buttonApplyApplication->setEnabled(false);
    ui->buttonApply->setEnabled(false);
}

void PreferenceDialog::currentTabChanged()
{
    // Despite its name: a setting changed, not the tab.
    ui->buttonApplyApplication->setEnabled(true);
    ui->buttonApply->setEnabled(true);
}

bool PreferenceDialog::applyClicked()
{
    m_launcher->setShowAllVersions(ui->checkBoxAllowAllVersions->isChecked());
    m_launcher->setLocale(ui->comboLanguage->currentData(Qt::UserRole).toString());
    ui->buttonApplyApplication->setEnabled(false);
    ui->buttonApply->setEnabled(false);
    return true;
}

void PreferenceDialog::okClicked()
{
    if (!ui->buttonApplyApplication->isEnabled() && !ui->buttonApply->isEnabled()) {
        accept();
        return;
    }
    if (QMessageBox::question(
            this, tr("Confirm"), tr("Are you sure to change the preferences?"), QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::No)
        return;
    if (applyClicked())
        accept();
}

void PreferenceDialog::cancelClicked()
{
    // No question, even with changes pending.
    reject();
}
