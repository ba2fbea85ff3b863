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

/// Fills the editor from a parameter file that the user chooses; what the file lacks, or has no value for, is
/// then unknown. A file of another device is refused and changes nothing. Tells the user what came of it.
/// ProfilePath stays at the file; without a choice nothing happens. False when nothing was loaded.
bool LoadParameterFile(Program& program, ParameterControls& controls);

/// Writes what is known in the editor to a parameter file that the user chooses; lines of what is not known
/// go, whatever else stands in the file stays. A file that cannot be written keeps its old content. Tells the
/// user what came of it. ProfilePath stays at the file; without a choice nothing happens.
void SaveParameterFile(Program& program, ParameterControls& controls);

}  // namespace vek
