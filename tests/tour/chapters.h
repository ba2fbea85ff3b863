#pragma once

class Tour;

/// From the first look at the main window to the end of the program: settings, device search, monitor, terminal.
void mainJob(Tour& tour);
