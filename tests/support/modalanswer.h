#ifndef MODALANSWER_H
#define MODALANSWER_H

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QtTest>

// Answers the next modal dialog that the code under test opens, as a user
// would, and keeps what it showed. For widget tests, which run the real
// dialogs in their own event loops.
class ModalAnswer : public QObject
{
public:
    // button: the message box button to press ("Ok", "Yes", "No"); for any
    // other dialog it is rejected, unless whileOpen decides otherwise.
    explicit ModalAnswer(
        QMessageBox::StandardButton button = QMessageBox::Ok, std::function<void(QWidget *)> whileOpen = {})
        : m_button(button)
        , m_whileOpen(std::move(whileOpen))
    {
        connect(&m_timer, &QTimer::timeout, this, &ModalAnswer::poll);
        m_timer.start(10);
    }

    int count() const { return m_texts.size(); }
    QStringList texts() const { return m_texts; }
    QString title() const { return m_title; }

private:
    void poll()
    {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal || modal == m_last)
            return;
        m_last = modal;
        // Answered from a timer of its own: this one does not fire again
        // while its handler runs, and answering may open the next dialog.
        QTimer::singleShot(0, this, [this, modal = QPointer<QWidget>(modal)]() {
            if (modal)
                answer(modal);
        });
    }

    void answer(QWidget *modal)
    {
        if (m_whileOpen)
            m_whileOpen(modal);
        if (auto *box = qobject_cast<QMessageBox *>(modal)) {
            m_texts.append(box->text());
            m_title = box->windowTitle();
            if (QAbstractButton *button = box->button(m_button))
                button->click();
            else
                box->reject();
        } else if (auto *dialog = qobject_cast<QDialog *>(modal)) {
            m_texts.append(dialog->windowTitle());
            if (dialog->isVisible())
                dialog->reject();
        }
    }

    QMessageBox::StandardButton m_button;
    std::function<void(QWidget *)> m_whileOpen;
    QTimer m_timer;
    QPointer<QWidget> m_last;
    QStringList m_texts;
    QString m_title;
};

#endif // MODALANSWER_H
