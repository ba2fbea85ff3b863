#pragma once

class Tour;

/// From the first look at the main window to the terminal: settings, device search, monitor over Modbus RTU.
void mainJob(Tour& tour);

/// Search and monitor over the KDL bus.
void kdlBus(Tour& tour);

/// The end, from the menu.
void endProgram(Tour& tour);
