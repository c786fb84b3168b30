#include <utility>

#include <Corvane/Decoding/ModelBuilderError.hpp>
#include <Corvane/Platform/Text/LocalizedString.hpp>

namespace corvane {

// Message catalogues are made with xgettext --keyword=localizedString --add-comments=TRANSLATORS.

std::optional<std::string> ModelBuilderError::errorDescription() const {
    switch (case_) {
        case Case::lackOfInputData:
            return localizedString("Transformation can't be started because of empty or not full input data");
        case Case::brokenData:
            return localizedString(
                "Main input data objects are available but some required properties are nil or have unknown format");
        case Case::emptyResult:
            // TRANSLATORS: Use this instead of returning nil
            return localizedString("Data transforming has been finished but the final result is empty.");
    }
    std::unreachable();
}

std::string ModelBuilderError::description() const {
    switch (case_) {
        case Case::lackOfInputData:
            return "lackOfInputData";
        case Case::brokenData:
            return "brokenData";
        case Case::emptyResult:
            return "emptyResult";
    }
    std::unreachable();
}

}  // namespace corvane
