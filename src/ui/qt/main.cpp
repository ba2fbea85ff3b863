#include <QApplication>
#include <memory>

#include "app/frmModBus.h"
#include "platform/diskprofilefiles.h"
#include "platform/seams/system.h"
#include "platform/serialport.h"
#include "ui/qt/frontend.h"

using namespace vek;

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    FrontEnd frontEnd;
    const auto folders = systemFolders();
    DiskProfileFiles profileFiles;
    SerialPort serial(systemLine(folders->commonAppData().path));
    Program program({frontEnd.desktop(), frontEnd, serial, profileFiles, *folders, systemNumberLocale()});

    frontEnd.desktop().watchLine(serial);
    frontEnd.dispatcher().serve(program);
    return frontEnd.exec([&program] { program.windows.open(std::make_unique<frmModBus>(program)); });
}
