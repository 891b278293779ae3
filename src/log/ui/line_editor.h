#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

namespace vel {

/// The editor below the list that is made ready when a line is selected for the
/// sake of a record that is missing.
enum class LineEditor { none, aircraft, flight, airline, airport, photo };

/// The editors of a panel, one of which waits to get the keys until the details
/// of its line are shown.
class LineEditors {
 public:
  /// `takeKeys(key)` gives an editor the keys; `key` is what the record is to be
  /// written for, where the line does not tell.
  using TakeKeys = std::function<void(const std::string& key)>;
  void add(LineEditor editor, TakeKeys takeKeys) { editors_[editor] = std::move(takeKeys); }

  /// Lets an editor wait; LineEditor::none for no one. One that was not added
  /// is not there to get the keys.
  void wait(LineEditor editor, const std::string& key) {
    waiting_ = editor;
    key_ = key;
  }

  /// Gives the waiting editor the keys, once.
  void giveKeys() {
    const auto found = editors_.find(std::exchange(waiting_, LineEditor::none));
    if (found != editors_.end()) found->second(key_);
  }

 private:
  std::map<LineEditor, TakeKeys> editors_;
  LineEditor waiting_ = LineEditor::none;
  std::string key_;
};

}  // namespace vel
