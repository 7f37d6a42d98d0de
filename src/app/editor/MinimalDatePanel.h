#pragma once

#include "dates/DateTimeConfiguration.h"

#include <QDateTime>
#include <QDialog>

#include <optional>

class QDateTimeEdit;
class QRadioButton;

namespace tagmoor {

// The rule panel of one date field, in its first form: keep the photo's date, or give one
// date to every marked photo.
class MinimalDatePanel : public QDialog {
    Q_OBJECT
public:
    MinimalDatePanel(const QString& fieldLabel, const DateTimeConfiguration& current,
                     const std::optional<QDateTime>& photoDate, QWidget* parent = nullptr);

    DateTimeConfiguration rule() const;
    std::optional<QDateTime> slot() const;

    QRadioButton* keepButton() const { return m_keep; }
    QRadioButton* selectButton() const { return m_select; }
    QDateTimeEdit* dateEdit() const { return m_date; }

private:
    QRadioButton* m_keep;
    QRadioButton* m_select;
    QDateTimeEdit* m_date;
};

} // namespace tagmoor
