#pragma once

class Tour;

/// From the first look at the main window to the terminal: settings, device search, monitor over Modbus RTU.
void mainJob(Tour& tour);

/// The two register windows, at the device of the main job.
void registerTools(Tour& tour);

/// Search and monitor over the KDL bus.
void kdlBus(Tour& tour);

/// The battery monitor, at a device that plays a battery string through its states. Afterwards no profile is
/// chosen.
void battery(Tour& tour);

/// The parameter editor, at devices of four types; starts without a chosen profile.
void parameters(Tour& tour);

/// The parameter editor and the commands over the KDL bus; its last step switches the device to Modbus RTU,
/// with which the program ends.
void kdlDeviceWork(Tour& tour);

/// The same device over Modbus RTU, in another run of the program.
void modbusDeviceWork(Tour& tour);

/// The monitor of a device on COM1, until the tour's folder holds a file "stop"; there it leaves "polling"
/// once values come, and in "terminal.txt" what the terminal window then holds: lines, bytes, empty lines.
void soak(Tour& tour);

/// The end, from the menu.
void endProgram(Tour& tour);
