#pragma once

#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <cstddef>
#include <filesystem>
#include <utility>

namespace vel::test {

/// What a user means to do from its begin to its end, a step at a time. Each
/// step looks for its windows anew: the program may have ended and started again
/// in between.
class Errand {
 public:
  enum class Step {
    made,      ///< a key or a click
    waits,     ///< the program has to do something first
    hindered,  ///< another dialog is in the way
    over,      ///< whether it came to its end or was given up
  };

  Errand() = default;
  Errand(const Errand&) = delete;
  Errand& operator=(const Errand&) = delete;
  virtual ~Errand() = default;

  [[nodiscard]] virtual const char* name() const = 0;
  virtual void begin() = 0;
  /// `modal` takes all keys and clicks; null for none.
  virtual Step step(QWidget* modal) = 0;

  /// How often it came to its end.
  [[nodiscard]] std::size_t done() const { return done_; }

 protected:
  std::size_t done_ = 0;
};

/// Drops a file on a browser, waits for what the dialog makes of it and imports
/// it; where there is nothing to import, the same with the next file.
class ImportErrand : public Errand {
 public:
  explicit ImportErrand(const QStringList& files) : files_(files) {}

  [[nodiscard]] const char* name() const override { return "import"; }
  void begin() override;
  Step step(QWidget* modal) override;

 private:
  Step stepOf(QWidget& dialog);

  QStringList files_;
  qsizetype next_ = 0;
  qsizetype tries_ = 0;
  int waits_ = 0;
  QPointer<QWidget> pressedIn_;  // the dialog that was told to import
};

/// Saves a browser's list and waits for the file.
class SaveErrand : public Errand {
 public:
  /// The folder in which the program is told to save lists.
  explicit SaveErrand(std::filesystem::path folder) : folder_(std::move(folder)) {}

  [[nodiscard]] const char* name() const override { return "save"; }
  void begin() override;
  Step step(QWidget* modal) override;

 private:
  std::filesystem::path folder_;
  int tries_ = 0;
  int waits_ = 0;
};

/// Drops a file on a window, as a file manager does; false where it is not taken.
bool dropFile(QWidget& window, const QString& file);

}  // namespace vel::test
