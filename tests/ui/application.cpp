#include <gtest/gtest.h>

#include <QApplication>
#include <memory>

namespace vek::test {

namespace {

/// The one QApplication of all tests, on a screen that exists only in memory.
class Application : public ::testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application_ = std::make_unique<QApplication>(argumentCount_, arguments_);
    }
    void TearDown() override { application_.reset(); }

  private:
    char name_[9] = "ui_tests";
    char* arguments_[2] = {name_, nullptr};
    int argumentCount_ = 1;
    std::unique_ptr<QApplication> application_;
};

[[maybe_unused]] const ::testing::Environment* const environment =
    ::testing::AddGlobalTestEnvironment(new Application);

}  // namespace

}  // namespace vek::test
