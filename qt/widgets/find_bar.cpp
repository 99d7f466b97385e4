#include "qt/widgets/find_bar.h"

#include <QKeyEvent>
#include <QToolButton>
#include <algorithm>

#include "qt/widgets/palette_colors.h"
#include "ui_find_bar.h"

namespace pelmarix::qt {
namespace {

// Of a name or a line, to which nobody listens for longer.
constexpr qsizetype longestTold = 1000;

}  // namespace

FindBar::FindBar(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::FindBar>()) {
  ui_->setupUi(this);
  usualDescription_ = ui_->text->accessibleDescription();
  // The line edit makes this button itself and has no other access to it.
  if (auto* clear = ui_->text->findChild<QToolButton*>()) clear->setAccessibleName(tr("Clear"));
  setPlaceholderColor();
  hide();
  counting_.setSingleShot(true);
  connect(&counting_, &QTimer::timeout, this, &FindBar::countMatches);
  connect(ui_->text, &QLineEdit::textChanged, this,
          [this] { find(SearchStart::atSelection, SearchDirection::forward); });
  connect(ui_->allParts, &QCheckBox::toggled, this,
          [this] { find(SearchStart::atSelection, SearchDirection::forward); });
  connect(ui_->next, &QPushButton::clicked, this, &FindBar::findNext);
  connect(ui_->previous, &QPushButton::clicked, this, &FindBar::findPrevious);
  connect(ui_->done, &QPushButton::clicked, this, &FindBar::endSearch);
}

FindBar::~FindBar() = default;

void FindBar::addPart(QWidget& widget, Searchable& searchable) {
  parts_.push_back({&widget, &searchable});
  ui_->allParts->setVisible(parts_.size() > 1);
}

void FindBar::setPart(const QWidget& widget) {
  const auto part = std::find_if(parts_.begin(), parts_.end(),
                                 [&widget](const Part& one) { return one.widget == &widget; });
  const auto chosen = static_cast<std::size_t>(part - parts_.begin());
  if (part == parts_.end() || chosen == current_) return;
  current_ = chosen;
  setOutcome({});
  showScope();
}

bool FindBar::isAllSearched() const { return ui_->allParts->isChecked(); }

void FindBar::showScope() {
  ui_->text->setPlaceholderText(isAllSearched()
                                    ? tr("Find in all parts")
                                    : tr("Find in %1").arg(parts_[current_].widget->accessibleName()));
  const QString sought = isVisible() ? ui_->text->text() : QString();
  for (const Part& part : parts_)
    part.searchable->markMatches(isAllSearched() || &part == &parts_[current_] ? sought : QString());
}

void FindBar::open() {
  show();
  ui_->text->setFocus(Qt::ShortcutFocusReason);
  ui_->text->selectAll();
  showScope();
}

void FindBar::endSearch() {
  // Before the bar goes: hiding what has the focus gives that to some other part, which would be searched.
  parts_[current_].widget->setFocus();
  hide();
  setOutcome({});
  showScope();
}

void FindBar::findNext() { find(SearchStart::pastSelection, SearchDirection::forward); }

void FindBar::findPrevious() { find(SearchStart::pastSelection, SearchDirection::backward); }

void FindBar::find(SearchStart start, SearchDirection direction) {
  const QString text = ui_->text->text();
  if (text.isEmpty() && start == SearchStart::pastSelection) return open();
  showScope();
  if (text.isEmpty()) return setOutcome({});
  if (!selectMatch(text, start, direction)) return setOutcome(notFound());
  if (ui_->outcome->text() == notFound()) setOutcome({});
  counting_.start();
}

bool FindBar::selectMatch(const QString& text, SearchStart start, SearchDirection direction) {
  Searchable& current = *parts_[current_].searchable;
  if (!isAllSearched()) return current.selectMatch(text, start, direction);
  if (current.selectMatchAhead(text, start, direction)) return true;
  const std::size_t step = direction == SearchDirection::forward ? 1 : parts_.size() - 1;
  for (std::size_t i = 1; i < parts_.size(); ++i) {
    const Part& other = parts_[(current_ + i * step) % parts_.size()];
    if (!other.searchable->selectMatchAhead(text, SearchStart::atEdge, direction)) continue;
    setPart(*other.widget);
    return true;
  }
  return current.selectMatchAhead(text, SearchStart::upToSelection, direction);
}

QString FindBar::notFound() const {
  return isAllSearched() ? tr("Not found in any part")
                         : tr("Not found in %1").arg(parts_[current_].widget->accessibleName());
}

void FindBar::countMatches() {
  const QString text = ui_->text->text();
  if (!isVisible() || text.isEmpty()) return;
  const Part& current = parts_[current_];
  const auto [matches, selected] = current.searchable->countMatches(text);
  std::size_t all = matches;
  for (const Part& part : parts_)
    if (isAllSearched() && &part != &current) all += part.searchable->countMatches(text).matches;
  if (all == 0) return setOutcome(notFound());
  QString outcome = current.widget->accessibleName() + QStringLiteral(": ");
  if (selected > 0)
    outcome += tr("%1 of %2").arg(selected).arg(matches);
  else
    outcome += matches == 1 ? tr("1 match") : tr("%1 matches").arg(matches);
  if (isAllSearched()) outcome += tr(", %1 in all").arg(all);
  setOutcome(outcome, selected > 0 ? current.searchable->selectedMatchInWords() : QString());
}

void FindBar::setOutcome(const QString& outcome, const QString& found) {
  counting_.stop();
  ui_->outcome->setText(outcome);
  ui_->text->setAccessibleDescription(outcome.isEmpty() ? usualDescription_ : outcome);
  const QString match = found.isEmpty() ? QString() : found.left(longestTold) + QStringLiteral(". ");
  if (!outcome.isEmpty()) announcer_.announce(match + outcome);
}

void FindBar::setPlaceholderColor() {
  QPalette colors = ui_->text->palette();
  // The bar has a new palette before its parts have.
  colors.setColor(QPalette::PlaceholderText, placeholderColor(palette()));
  ui_->text->setPalette(colors);
}

void FindBar::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) setPlaceholderColor();
}

void FindBar::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Escape:
      return endSearch();
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return event->modifiers().testFlag(Qt::ShiftModifier) ? findPrevious() : findNext();
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace pelmarix::qt
