#pragma once

class Script;

/// The monitor of a device on COM1, until the tour's folder holds a file "stop"; there it leaves "polling"
/// once values come, and in "terminal.txt" what the terminal window then holds: lines, bytes, empty lines.
void soak(Script& script);
