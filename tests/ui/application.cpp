#include <gtest/gtest.h>

#include <QApplication>
#include <optional>

namespace {

/// The one QApplication of all tests, on a screen that exists only in memory.
class Application : public ::testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_.emplace(noArguments_, nullptr);
    }
    void TearDown() override { application_.reset(); }

  private:
    int noArguments_ = 0;
    std::optional<QApplication> application_;
};

[[maybe_unused]] const auto* const environment = ::testing::AddGlobalTestEnvironment(new Application);

}  // namespace
