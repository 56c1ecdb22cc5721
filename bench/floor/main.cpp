// The floor of the start-up figure: a bare Qt Widgets dialog with as many
// controls as the login window (a frame, two labels, two line edits, three
// buttons), started the same way and reporting its first paint the same way.
#include "ui/Form.h"

#include <QApplication>
#include <QDialog>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QDialog dialog;
    dialog.setWindowTitle(QStringLiteral("登录"));
    auto *frame = new QGroupBox(&dialog);
    auto *grid = new QGridLayout(frame);
    grid->addWidget(new QLabel(QStringLiteral("用户名称(&U):"), frame), 0, 0);
    grid->addWidget(new QLineEdit(frame), 0, 1);
    grid->addWidget(new QLabel(QStringLiteral("密码(&P):"), frame), 1, 0);
    grid->addWidget(new QLineEdit(frame), 1, 1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (const char *caption : {"确定", "取消", "管理"})
        buttons->addWidget(new QPushButton(QString::fromUtf8(caption), &dialog));
    auto *layout = new QVBoxLayout(&dialog);
    layout->addWidget(frame);
    layout->addLayout(buttons);
    ui::afterFirstPaint(&dialog, [] {
        std::fputs("login-shown\n", stdout);
        std::fflush(stdout);
    });
    dialog.show();
    return app.exec();
}
