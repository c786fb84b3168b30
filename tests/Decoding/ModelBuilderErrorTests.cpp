#include <gtest/gtest.h>

#include <Corvane/Decoding/ModelBuilderError.hpp>
#include <Corvane/Platform/AnyError.hpp>

namespace corvane {
namespace {

TEST(ModelBuilderError, TellsAUserInEnglishWithoutACatalogue) {
    struct {
        ModelBuilderError error;
        const char *name, *text;
    } const cases[] = {
        {ModelBuilderError::lackOfInputData(), "lackOfInputData",
         "Transformation can't be started because of empty or not full input data"},
        {ModelBuilderError::brokenData(), "brokenData",
         "Main input data objects are available but some required properties are nil or have unknown format"},
        {ModelBuilderError::emptyResult(), "emptyResult",
         "Data transforming has been finished but the final result is empty."},
    };

    for (const auto& test : cases) {
        EXPECT_EQ(AnyError(test.error).localizedDescription(), test.text);
        EXPECT_EQ(test.error.description(), test.name);
        EXPECT_EQ(test.error.isBrokenData(), test.error == ModelBuilderError::brokenData());
    }
}

}  // namespace
}  // namespace corvane
