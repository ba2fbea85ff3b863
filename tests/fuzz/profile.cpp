// One value written to a profile file of any content, and texts between the character sets. Input: lengths of
// section, key and value, these three, the file.
#include "fuzz.h"
#include "platform/profiletext.h"
#include "platform/textcodec.h"

namespace vek {
namespace {

/// Whether a line can hold the text as it is. Names that would make another kind of line are the program's
/// own fault; it has none.
bool isPlain(std::string_view text) {
    constexpr std::string_view unfit("=;[]\r\n\0", 7);
    constexpr std::string_view notAtTheEnds = " \t\"'";
    return !text.empty() && text.find_first_of(unfit) == std::string_view::npos &&
           notAtTheEnds.find(text.front()) == std::string_view::npos &&
           notAtTheEnds.find(text.back()) == std::string_view::npos;
}

}  // namespace

void fuzz(Input input) {
    const std::size_t sectionLength = input.byte();
    const std::size_t keyLength = input.byte();
    const std::size_t valueLength = input.byte();
    const ProfileEntry entry{input.bytes(sectionLength), input.bytes(keyLength), input.bytes(valueLength)};
    std::string file = input.rest();
    writeProfileText(file, {entry});
    const std::string value = windows1252FromUtf8(entry.value);
    if (isPlain(windows1252FromUtf8(entry.section)) && isPlain(windows1252FromUtf8(entry.key)) &&
        isPlain(value)) {
        require(
            readProfileText(file, entry.section, entry.key, std::string::npos) == utf8FromWindows1252(value),
            "the value written is the value read");
        std::string again = file;
        writeProfileText(again, {entry});
        require(again == file, "writing once more changes nothing");
    }

    require(windows1252FromUtf8(utf8FromWindows1252(entry.value)) == entry.value,
            "every byte comes back from UTF-8");
    const std::string shown = withoutControls(entry.value);
    require(shown.find_first_of(std::string_view("\n\r\t\x7F\0", 5)) == std::string::npos,
            "no control character is shown");
    require(withoutControls(shown) == shown, "what is shown is UTF-8");
}

}  // namespace vek
