#include <libintl.h>

#include <Corvane/Platform/Text/LocalizedString.hpp>

namespace corvane {

std::string localizedString(const char* text) {
    // Under the empty text a catalogue keeps the facts about itself.
    return *text != '\0' ? ::gettext(text) : "";
}

}  // namespace corvane
