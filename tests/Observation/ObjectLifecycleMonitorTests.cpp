#include <string>

#include <gmock/gmock.h>

#include <Corvane/Observation/ObjectLifecycleMonitor.hpp>

namespace {

struct View {
    virtual ~View() = default;
};

struct ListView final : View {};

struct Described {
    [[nodiscard]] std::string description() const {
        part.reset();
        return "a page\nof two lines";
    }

    mutable std::shared_ptr<int> part = std::make_shared<int>(2);
};

/// Adds another object as it goes.
struct Successor {
    ~Successor() { corvane::ObjectLifecycleMonitor::add(std::make_shared<int>(3)); }
};

std::string printed() {
    ::testing::internal::CaptureStdout();
    corvane::ObjectLifecycleMonitor::printAliveObjects();
    return ::testing::internal::GetCapturedStdout();
}

}  // namespace

TEST(ObjectLifecycleMonitor, PrintsWhatIsStillThere) {
    std::shared_ptr<View> view = std::make_shared<ListView>();
    auto described = std::make_shared<const Described>();
    auto gone = std::make_shared<int>(1);
    corvane::ObjectLifecycleMonitor::add(gone);
    corvane::ObjectLifecycleMonitor::add(view);
    corvane::ObjectLifecycleMonitor::add(described);
    corvane::ObjectLifecycleMonitor::add(described->part);
    corvane::ObjectLifecycleMonitor::add(std::shared_ptr<int>(
        new int, [successor = std::make_shared<Successor>()](const int* object) { delete object; }));
    gone.reset();
    EXPECT_THAT(printed(), ::testing::MatchesRegex("\\(anonymous namespace\\)::ListView: 0x[0-9a-f]+\n"
                                                   "a page of two lines\n"));
    EXPECT_EQ(corvane::ObjectLifecycleMonitor::objects().size(), 4U)
        << "with the part, which went while it was printed, and the object that came meanwhile";
    view.reset();
    described.reset();
    EXPECT_EQ(printed(), "");
    EXPECT_TRUE(corvane::ObjectLifecycleMonitor::objects().empty());
}
