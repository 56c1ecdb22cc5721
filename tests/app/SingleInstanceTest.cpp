// Two programs started at the same moment from the same program folder:
// exactly one keeps running, the other says "已经运行！" and ends.
#include "store/Schema.h"

#include "support/Helpers.h"

#ifndef TESSALY_EXE
#error "TESSALY_EXE must name the program"
#endif

TEST(SingleInstance, OfTwoSimultaneousStartsExactlyOneSurvives)
{
    // The program folder is the executable's folder: give each run its own
    // copy so that this test does not meet a program started by hand.
    QTemporaryDir dir;
    const QString exe = dir.path() + "/tessaly";
    ASSERT_TRUE(QFile::copy(QStringLiteral(TESSALY_EXE), exe));
    store::createJournal(dir.path() + "/user2.mdb");

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("TESSALY_MESSAGES_TO_STDERR", "1");
    env.insert("TESSALY_ERRORS_TO_STDERR", "1");

    for (int round = 0; round < 20; ++round) {
        std::unique_ptr<QProcess> p[2];
        for (auto &q : p) {
            q = std::make_unique<QProcess>();
            q->setProcessEnvironment(env);
        }
        p[0]->start(exe, {});
        p[1]->start(exe, {});
        ASSERT_TRUE(p[0]->waitForStarted());
        ASSERT_TRUE(p[1]->waitForStarted());

        // The refused one ends by itself; wait for whichever that is.
        int refused = -1;
        for (int tries = 0; tries < 300 && refused < 0; ++tries) {
            for (int i = 0; i < 2; ++i)
                if (p[i]->waitForFinished(50)) {
                    refused = i;
                    break;
                }
        }
        ASSERT_GE(refused, 0) << "neither instance ended in round " << round;
        const int survivor = 1 - refused;
        EXPECT_TRUE(p[refused]->readAllStandardError().contains("已经运行！")) << round;
        EXPECT_EQ(std::make_pair(p[refused]->exitStatus(), p[refused]->exitCode()), std::make_pair(QProcess::NormalExit, 0)) << round;
        EXPECT_EQ(p[survivor]->state(), QProcess::Running) << round;
        // The survivor shows the login window; a missing database would end it,
        // so it is still there only because it won the lock and is waiting.
        p[survivor]->kill();
        p[survivor]->waitForFinished();
        EXPECT_FALSE(p[survivor]->readAllStandardError().contains("已经运行！")) << round;
    }
}
