#pragma once
// Helpers every window uses.
//
// ui::Form is a dialog with the two moments of a window's life that the
// program hangs work on: load (the first time it is shown, after the opener
// has handed it the user through GetMame) and unload (when it closes, however
// that happens). Both run through the error guard; ui::LifeCycle holds that
// sequence for the dialogs and for the main window alike.
//
// Keyboard: onEnter() runs an action when Enter (or the keypad Enter) is
// pressed in a widget; focusAndSelect() gives a widget the focus and selects
// its whole text; onAnyKey() runs an action before a widget sees any key.

#include <QDialog>

#include <functional>

namespace ui {

// Load once, unload once after each load, both through the error guard.
class LifeCycle {
public:
    explicit LifeCycle(std::function<void()> onLoad, std::function<void()> onUnload = {});

    bool isLoaded() const { return m_loaded; }
    // Runs the load unless it has run since the last unload.
    void load();
    // Runs the unload if a load has run and no unload since (an unload that
    // closes the window again does not run it twice).
    void unload();

private:
    std::function<void()> m_onLoad;
    std::function<void()> m_onUnload;
    bool m_loaded = false;
};

class Form : public QDialog {
    Q_OBJECT
public:
    explicit Form(QWidget *parent = nullptr);
    ~Form() override;

    bool isLoaded() const { return m_life.isLoaded(); }
    // Runs the load now if it has not run (the first show does it otherwise).
    void load();
    // Closes the window: runs the unload, then hides it and ends exec().
    void unload();

protected:
    virtual void formLoad() {}
    virtual void formUnload() {}

    void showEvent(QShowEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void done(int r) override;

private:
    LifeCycle m_life;
};

// A window opened for the signed-in user: the opener hands it the user's
// name and rights through GetMame before showing it; at load its caption
// becomes the name followed by the window's caption word. A subclass's
// formLoad() calls UserForm::formLoad() first.
class UserForm : public Form {
    Q_OBJECT
public:
    void GetMame(const QString &GuName, const QString &GuPower);

protected:
    UserForm(const QString &captionWord, QWidget *parent);

    void formLoad() override;

    QString m_GuName;
    QString m_GuPower;

private:
    QString m_captionWord;
};

void onEnter(QWidget *w, std::function<void()> action);
void onAnyKey(QWidget *w, std::function<void(int key)> action);
void focusAndSelect(QWidget *w);

// Runs `action` once from the event loop after the first paint of `w` has
// ended (never when `w` is destroyed first).
void afterFirstPaint(QWidget *w, std::function<void()> action);

} // namespace ui
