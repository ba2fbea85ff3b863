#include <QApplication>
#include <memory>

#include "app/frmModBus.h"
#include "platform/seams/system.h"
#include "ui/qt/frontend.h"

using namespace vek;

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    FrontEnd frontEnd;
    const auto folders = systemFolders();
    const auto profileFiles = systemProfileFiles();
    const auto serial = systemSerialControl(folders->commonAppData().path);
    Program program({frontEnd.desktop(), frontEnd, *serial, *profileFiles, *folders, systemNumberLocale()});

    frontEnd.desktop().watchLine(*serial);
    frontEnd.dispatcher().onEnd = [&serial] { serial->close(); };
    frontEnd.dispatcher().onIdle = [&program] { program.windows.collect(); };
    return frontEnd.exec([&program] { program.windows.open(std::make_unique<frmModBus>(program)); });
}
