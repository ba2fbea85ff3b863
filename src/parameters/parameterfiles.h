#pragma once

#include <string>
#include <string_view>

#include "parameters/parametercontrols.h"
#include "program/program.h"

namespace vek {

/// Name of a device's parameter file: the device's name with ".GPM". Whatever a device calls itself, this is
/// the name of an ordinary file without any folder: separators, characters that no file name may have,
/// control characters and ".." become "_", reserved names get a "_" in front, and no name at all is "_".
std::string parameterFileName(std::string_view deviceName);

/// Fills the editor from a parameter file that the user chooses; without a choice, from the file of the
/// device's name in the working folder. A file of another device is refused and changes nothing. Tells the
/// user what came of it. ProfilePath stays at the file. False when nothing was loaded.
bool LoadParameterFile(Program& program, ParameterControls& controls);

/// Writes the editor's content to a parameter file that the user chooses; without a choice, to the file of
/// the device's name in the working folder. Whatever else stands in the file stays; a file that cannot be
/// written keeps its old content, and so does every file while a parameter shows a 0 that nobody has read.
/// Tells the user what came of it. ProfilePath stays at the file.
void SaveParameterFile(Program& program, ParameterControls& controls);

}  // namespace vek
