#include "Form.h"

#include "base/ErrorGuard.h"

#include <QAbstractSpinBox>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTextEdit>

namespace ui {

LifeCycle::LifeCycle(std::function<void()> onLoad, std::function<void()> onUnload)
    : m_onLoad(std::move(onLoad)), m_onUnload(std::move(onUnload))
{}

void LifeCycle::load()
{
    if (m_loaded)
        return;
    m_loaded = true;
    if (m_onLoad)
        base::guard(m_onLoad);
}

void LifeCycle::unload()
{
    if (!m_loaded)
        return;
    m_loaded = false; // first, so that an unload which closes the window again does not run twice
    if (m_onUnload)
        base::guard(m_onUnload);
}

Form::Form(QWidget *parent) : QDialog(parent), m_life([this] { formLoad(); }, [this] { formUnload(); })
{
    setWindowTitle(QStringLiteral("Tessaly"));
}

Form::~Form() = default;

void Form::load() { m_life.load(); }

void Form::unload() { done(QDialog::Rejected); }

void Form::showEvent(QShowEvent *event)
{
    load();
    QDialog::showEvent(event);
}

void Form::closeEvent(QCloseEvent *event)
{
    m_life.unload();
    QDialog::closeEvent(event);
}

void Form::done(int r)
{
    // Esc, accept/reject and unload() end up here.
    m_life.unload();
    QDialog::done(r);
}

UserForm::UserForm(const QString &captionWord, QWidget *parent) : Form(parent), m_captionWord(captionWord) {}

void UserForm::GetMame(const QString &GuName, const QString &GuPower)
{
    m_GuName = GuName;
    m_GuPower = GuPower;
}

void UserForm::formLoad() { setWindowTitle(m_GuName + m_captionWord); }

namespace {

class KeyFilter : public QObject {
public:
    KeyFilter(QObject *parent, std::function<bool(QKeyEvent *)> f) : QObject(parent), m_f(std::move(f)) {}

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        bool consumed = false;
        base::guard([&] { consumed = m_f(static_cast<QKeyEvent *>(event)); });
        return consumed;
    }

private:
    std::function<bool(QKeyEvent *)> m_f;
};

bool isEnter(int key) { return key == Qt::Key_Return || key == Qt::Key_Enter; }

} // namespace

void onEnter(QWidget *w, std::function<void()> action)
{
    w->installEventFilter(new KeyFilter(w, [action = std::move(action)](QKeyEvent *e) {
        if (!isEnter(e->key()))
            return false;
        action();
        return true;
    }));
}

namespace {
class FirstPaintFilter : public QObject {
public:
    FirstPaintFilter(QWidget *w, std::function<void()> action) : QObject(w), m_w(w), m_action(std::move(action)) {}

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            m_w->removeEventFilter(this);
            // Queued, so that it follows the whole paint.
            QMetaObject::invokeMethod(m_w, std::move(m_action), Qt::QueuedConnection);
            deleteLater();
        }
        return false;
    }

private:
    QWidget *m_w;
    std::function<void()> m_action;
};
} // namespace

void afterFirstPaint(QWidget *w, std::function<void()> action)
{
    w->installEventFilter(new FirstPaintFilter(w, std::move(action)));
}

void onAnyKey(QWidget *w, std::function<void(int)> action)
{
    w->installEventFilter(new KeyFilter(w, [action = std::move(action)](QKeyEvent *e) {
        action(e->key());
        return false;
    }));
}

void focusAndSelect(QWidget *w)
{
    w->setFocus(Qt::OtherFocusReason);
    if (auto *le = qobject_cast<QLineEdit *>(w))
        le->selectAll();
    else if (auto *sb = qobject_cast<QAbstractSpinBox *>(w))
        sb->selectAll();
    else if (auto *te = qobject_cast<QTextEdit *>(w))
        te->selectAll();
}

} // namespace ui
