#include "tables/ui/table_editing.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>

#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

// How long another program's rewrite is waited for before the user is asked.
constexpr std::chrono::milliseconds kPatience{1000};
constexpr std::chrono::milliseconds kShortWait{2};

// One question at a time: whichever window's box is open, it is answered first.
bool isQuestionOpen() {
  return qobject_cast<QMessageBox*>(QApplication::activeModalWidget()) != nullptr;
}

}  // namespace

/// One rewrite under way, with the button that started it.
class TableEditing::Rewriting {
 public:
  Rewriting(const TableEditing& editing, QPushButton& button, ReferenceTableRewrite rewrite,
            std::function<void()> written, std::function<void()> givenUp)
      : whenWritten(std::move(written)),
        whenGivenUp(std::move(givenUp)),
        editing_(editing),
        button_(&button),
        rewrite_(std::move(rewrite)),
        slot_(editing.context_.jobs) {
    // A disabled button hands the keyboard to its neighbour: it gets it back,
    // unless the user has taken it elsewhere meanwhile.
    const bool hadFocus = button.hasFocus();
    button.setEnabled(false);
    if (hadFocus) heir_ = button.window()->focusWidget();
    hadFocus_ = hadFocus;
    // Drawn at once, as what is said is: the work may begin before the window is
    // drawn the next time.
    button.repaint();
  }

  void start() {
    slot_.start(makeJob([this](Job::Clock::time_point) { return step(); }),
                {.stepped = [this] { askIfHeld(); }, .ended = [this](const Status&) { end(); }});
  }

  /// Does what is left of it, without a question.
  void finish() {
    slot_.stop();
    const Job::Clock::time_point patience = Job::Clock::now() + kPatience;
    while (outcome_ == RewriteOutcome::more || outcome_ == RewriteOutcome::busy) {
      if (outcome_ == RewriteOutcome::busy && Job::Clock::now() > patience) return;
      if (outcome_ == RewriteOutcome::busy) std::this_thread::sleep_for(kShortWait);
      outcome_ = rewrite_.next();
    }
  }

  [[nodiscard]] RewriteOutcome outcome() const { return outcome_; }
  [[nodiscard]] const Error& error() const { return rewrite_.error(); }

  void enableButton() {
    if (button_ == nullptr) return;
    const bool takesFocus = hadFocus_ && button_->window()->focusWidget() == heir_;
    button_->setEnabled(true);
    if (takesFocus) button_->setFocus();
  }

  std::function<void()> whenWritten;
  std::function<void()> whenGivenUp;

 private:
  JobProgress step() {
    // Held, but not asked about yet.
    if (outcome_ == RewriteOutcome::held) std::this_thread::sleep_for(kShortWait);
    outcome_ = rewrite_.next();
    if (outcome_ == RewriteOutcome::busy) {
      waitForOther();
      return JobProgress::more;
    }
    busySince_.reset();
    const bool isUnderWay = outcome_ == RewriteOutcome::more || outcome_ == RewriteOutcome::held;
    return isUnderWay ? JobProgress::more : JobProgress::done;
  }

  // Another program is done in a moment; one that is not holds the table. An
  // earlier rewrite of this window may wait for the user's answer.
  void waitForOther() {
    const Job::Clock::time_point now = Job::Clock::now();
    const bool isFirst = editing_.rewritings_.front().get() == this;
    if (!busySince_ || !isFirst) busySince_ = now;
    if (now - *busySince_ < kPatience) {
      std::this_thread::sleep_for(kShortWait);
      return;
    }
    busySince_.reset();
    outcome_ = RewriteOutcome::held;
  }

  void askIfHeld() {
    if (outcome_ != RewriteOutcome::held || isQuestionOpen()) return;
    if (!editing_.desktop().isEnding()) {
      if (editing_.desktop().askRetry(kTableHeld)) return;
      editing_.desktop().endProgram(1);
    }
    slot_.stop();
    end();
  }

  // The last thing that is done here: the object is gone afterwards.
  void end() { editing_.end(*this); }

  const TableEditing& editing_;
  QPointer<QPushButton> button_;
  bool hadFocus_ = false;
  QPointer<QWidget> heir_;
  ReferenceTableRewrite rewrite_;
  RewriteOutcome outcome_ = RewriteOutcome::more;
  std::optional<Job::Clock::time_point> busySince_;
  JobSlot slot_;
};

TableEditing::TableEditing(const Context& context, const Tables& tables, BusyLabels& labels)
    : context_(context), tables_(tables), labels_(labels) {}

TableEditing::~TableEditing() {
  for (const auto& rewriting : rewritings_) rewriting->finish();
}

bool TableEditing::refuse(const char* message) const {
  desktop().showMessage(message);
  return false;
}

bool TableEditing::acceptTexts(std::initializer_list<QString> texts) const {
  std::string joined;
  for (const QString& text : texts) joined += text.toStdString();
  if (hasIllegalCharacter(joined) || !canBeStored(tables_.encoding(), joined)) {
    return refuse(kIllegalCharacter);
  }
  return true;
}

bool TableEditing::canStore(const QString& text) const {
  return canBeStored(tables_.encoding(), text.toStdString()) || refuse(kIllegalCharacter);
}

bool TableEditing::acceptKey(const QString& key) const {
  return canBeKey(tables_.encoding(), key.toStdString()) || refuse(kIllegalCharacter);
}

void TableEditing::rewrite(QPushButton& button, const TableEdit& edit,
                           std::function<void()> whenWritten,
                           std::function<void()> whenGivenUp) const {
  rewrite(button, ReferenceTableRewrite(tables_.folders(), tables_.encoding(), edit),
          std::move(whenWritten), std::move(whenGivenUp));
}

void TableEditing::rewrite(QPushButton& button, ReferenceTableRewrite rewrite,
                           std::function<void()> whenWritten,
                           std::function<void()> whenGivenUp) const {
  if (rewrite.next() == RewriteOutcome::refused) {
    refuse(kIllegalCharacter);
    if (whenGivenUp) whenGivenUp();
    return;
  }
  labels_.showRewriting();
  rewritings_.push_back(std::make_unique<Rewriting>(
      *this, button, std::move(rewrite), std::move(whenWritten), std::move(whenGivenUp)));
  rewritings_.back()->start();
}

void TableEditing::end(Rewriting& rewriting) const {
  std::unique_ptr<Rewriting> over;
  for (auto place = rewritings_.begin(); place != rewritings_.end(); ++place) {
    if (place->get() != &rewriting) continue;
    over = std::move(*place);
    rewritings_.erase(place);
    break;
  }
  if (over == nullptr) return;
  if (over->outcome() == RewriteOutcome::done) {
    if (over->whenWritten) over->whenWritten();
    labels_.showComplete();
    if (!rewritings_.empty()) labels_.showRewriting();
    over->enableButton();
    return;
  }
  if (over->outcome() == RewriteOutcome::failed && !desktop().isEnding()) {
    endWithError(desktop(), over->error());
  }
  if (over->whenGivenUp) over->whenGivenUp();
}

EditorBox* makeEditorBox(QWidget* parent, const QString& name, const QString& accessibleName,
                         const QString& toolTip, QPushButton* enter) {
  auto* box = new EditorBox(parent);
  box->setObjectName(name);
  box->setAccessibleName(accessibleName);
  box->setToolTip(toolTip);
  QObject::connect(box, &QLineEdit::returnPressed, enter, &QPushButton::click);
  return box;
}

QPushButton* makeEnterButton(QWidget* parent, const QString& name, const QString& toolTip) {
  auto* button = new QPushButton(QStringLiteral("Ent"), parent);
  button->setObjectName(name);
  button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
  button->setToolTip(toolTip);
  button->setFixedWidth(button->fontMetrics().horizontalAdvance(QStringLiteral("Ent")) + 22);
  return button;
}

}  // namespace vel
