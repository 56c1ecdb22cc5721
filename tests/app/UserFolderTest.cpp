// An installed program (bin/tessaly beside share/tessaly) started with no
// journal beside it: each user's data folder is made and filled from the
// templates, two users run side by side, and a folder that cannot be made or
// a damaged template ends the program with a message naming the folder.
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace {

const QStringList kTemplates = {"user2.mdb", "GpSz", "GpSh"};

QByteArray bytesOf(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

class Installed {
public:
    Installed()
    {
        QDir(m_root.path()).mkpath("bin");
        QDir(m_root.path()).mkpath("share/tessaly");
        QFile::copy(QStringLiteral(TESSALY_EXE), m_root.filePath("bin/tessaly"));
        for (const QString &name : kTemplates)
            QFile::copy(QStringLiteral(TESSALY_TEMPLATE_DIR) + u'/' + name, templatePath(name));
    }
    QString templatePath(const QString &name) const { return m_root.filePath("share/tessaly/" + name); }
    QString path(const QString &name) const { return m_root.filePath(name); }

    // Starts the program as a user whose data home is `dataHome`.
    std::unique_ptr<QProcess> start(const QString &dataHome) const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("HOME", m_root.filePath("home"));
        env.insert("XDG_DATA_HOME", dataHome);
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("TESSALY_MESSAGES_TO_STDERR", "1");
        env.insert("TESSALY_ERRORS_TO_STDERR", "1");
        env.insert("TESSALY_REPORT_SHOWN", "1");
        auto p = std::make_unique<QProcess>();
        p->setProcessEnvironment(env);
        p->start(m_root.filePath("bin/tessaly"), {});
        p->waitForStarted();
        return p;
    }

private:
    QTemporaryDir m_root;
};

bool loginShown(QProcess &p)
{
    QByteArray out;
    while (!out.contains("login-shown") && p.waitForReadyRead(20000))
        out += p.readAllStandardOutput();
    return out.contains("login-shown");
}

} // namespace

TEST(UserFolder, EachUserGetsHisOwnSeededJournalAndLock)
{
    Installed inst;
    const QString homes[] = {inst.path("alice"), inst.path("bob")};
    std::unique_ptr<QProcess> running[2];
    for (int i = 0; i < 2; ++i)
        running[i] = inst.start(homes[i]);
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(loginShown(*running[i])) << running[i]->readAllStandardError().toStdString();
        const QDir folder(homes[i] + "/Tessaly");
        for (const QString &name : kTemplates)
            EXPECT_EQ(bytesOf(folder.filePath(name)), bytesOf(inst.templatePath(name))) << name.toStdString();
        EXPECT_TRUE(folder.exists(".tessaly.lock"));
    }
    // The same user a second time is refused; nothing lands beside the program.
    auto again = inst.start(homes[0]);
    ASSERT_TRUE(again->waitForFinished(20000));
    EXPECT_TRUE(again->readAllStandardError().contains("已经运行！"));
    EXPECT_EQ(QDir(inst.path("bin")).entryList(QDir::Files | QDir::Hidden), QStringList{"tessaly"});
    for (auto &p : running) {
        p->kill();
        p->waitForFinished();
    }
}

TEST(UserFolder, AFolderThatCannotBeMadeOrADamagedTemplateEndsTheProgram)
{
    const struct {
        const char *what;
        bool fileInTheWay;
        const char *damaged; // template replaced by junk, or removed when junk is empty
        QByteArray junk;
    } cases[] = {
        {"a file in the way", true, nullptr, {}},
        {"damaged journal", false, "user2.mdb", QByteArray(4096, 'x')},
        {"truncated journal", false, "user2.mdb", QByteArray("SQLite")},
        {"missing stock list", false, "GpSh", {}},
    };
    for (const auto &c : cases) {
        Installed inst;
        const QString home = inst.path("data");
        if (c.fileInTheWay) {
            QFile f(home);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        }
        if (c.damaged) {
            QFile::remove(inst.templatePath(c.damaged));
            QFile f(inst.templatePath(c.damaged));
            if (!c.junk.isEmpty()) {
                ASSERT_TRUE(f.open(QIODevice::WriteOnly) && f.write(c.junk) == c.junk.size());
            }
        }
        auto p = inst.start(home);
        ASSERT_TRUE(p->waitForFinished(20000)) << c.what;
        EXPECT_NE(p->exitCode(), 0) << c.what;
        const QString err = QString::fromUtf8(p->readAllStandardError());
        EXPECT_TRUE(err.contains(home + "/Tessaly") && err.contains("数据文件夹")) << c.what << err.toStdString();
        EXPECT_FALSE(QFileInfo::exists(home + "/Tessaly")) << c.what;
        EXPECT_FALSE(QFileInfo::exists(inst.path("home"))) << c.what;
    }
}
