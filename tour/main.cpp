// tour FOLDER: drives the window through a day's work and leaves pictures in FOLDER, recordings in
// FOLDER/recordings. tour FOLDER NAME: only the running main window, as picture NAME.

#include "tour/Tour.h"
#include "window/aids/Style.h"

#include <QApplication>
#include <QProcess>

#include <cstdio>

using namespace Qt::StringLiterals;

// The offscreen platform tells of what it lacks at every window; that is no news to who takes the tour.
static void ShowFaultsOnly(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "%s\n", qPrintable(text));
}

// A scale factor holds for a whole program, so each is a program of its own.
static bool PictureScaleFactors(const QString& folder) {
    bool allWent = true;
    for (const QString& factor : {u"1.5"_s, u"2"_s}) {
        qputenv("QT_SCALE_FACTOR", factor.toLatin1());
        const int result =
            QProcess::execute(QCoreApplication::applicationFilePath(), {folder, u"scale-factor-"_s + factor});
        allWent = allWent && result == 0;
    }
    return allWent;
}

int main(int argc, char** argv) {
    qInstallMessageHandler(ShowFaultsOnly);
    QApplication application(argc, argv);
    tracelet::InstallStyle();
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "usage: tour FOLDER [NAME]\n");
        return 2;
    }
    try {
        const QString folder = QDir(arguments.at(1)).absolutePath(); // folder dialogs change the current one
        const QString recordings = folder + u"/recordings"_s;
        if (arguments.size() > 2) {
            tracelet::Tour(folder, recordings).LookAtWindow(arguments.at(2));
            return 0;
        }
        QDir(recordings).removeRecursively(); // of an earlier tour
        tracelet::Tour tour(folder, recordings);
        tour.LookAtSettings();
        tour.RecordPolled();
        tour.Replay(u"Polled"_s);
        tour.RecordFast();
        tour.LookAtGraph();
        tour.Replay(u"Fast"_s);
        tour.LookAtManyPlots();
        tour.LoseScans();
        std::printf("%d pictures\n", tour.PictureCount());
        return PictureScaleFactors(folder) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "The tour stopped: %s\n", error.what());
        return 1;
    }
}
