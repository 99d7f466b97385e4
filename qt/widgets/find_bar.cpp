#include "qt/widgets/find_bar.h"

#include <QKeyEvent>
#include <QToolButton>

#include "qt/widgets/palette_colors.h"
#include "ui_find_bar.h"

namespace pelmarix::qt {

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
  connect(ui_->next, &QPushButton::clicked, this, &FindBar::findNext);
  connect(ui_->previous, &QPushButton::clicked, this, &FindBar::findPrevious);
  connect(ui_->done, &QPushButton::clicked, this, &FindBar::endSearch);
}

FindBar::~FindBar() = default;

void FindBar::setTarget(QWidget& widget, Searchable& searchable) {
  if (&widget == targetWidget_) return;
  if (target_ != nullptr) target_->markMatches({});
  targetWidget_ = &widget;
  target_ = &searchable;
  ui_->text->setPlaceholderText(tr("Find in %1").arg(widget.accessibleName()));
  setOutcome({});
  if (isVisible()) target_->markMatches(ui_->text->text());
}

void FindBar::open() {
  show();
  ui_->text->setFocus(Qt::ShortcutFocusReason);
  ui_->text->selectAll();
  if (target_ != nullptr) target_->markMatches(ui_->text->text());
}

void FindBar::endSearch() {
  // Before the bar goes: hiding what has the focus gives that to some other part, which would be the target.
  if (targetWidget_ != nullptr) targetWidget_->setFocus();
  hide();
  setOutcome({});
  if (target_ != nullptr) target_->markMatches({});
}

void FindBar::findNext() { find(SearchStart::pastSelection, SearchDirection::forward); }

void FindBar::findPrevious() { find(SearchStart::pastSelection, SearchDirection::backward); }

void FindBar::find(SearchStart start, SearchDirection direction) {
  if (target_ == nullptr) return;
  const QString text = ui_->text->text();
  if (text.isEmpty() && start == SearchStart::pastSelection) return open();
  if (isVisible()) target_->markMatches(text);
  const bool isFound = text.isEmpty() || target_->selectMatch(text, start, direction);
  const QString notFound = tr("Not found");
  if (!isFound) return setOutcome(notFound);
  if (text.isEmpty() || ui_->outcome->text() == notFound) setOutcome({});
  counting_.start();
}

void FindBar::countMatches() {
  const QString text = ui_->text->text();
  if (!isVisible() || target_ == nullptr || text.isEmpty()) return;
  const std::size_t count = target_->countMatches(text);
  setOutcome(count == 0 ? tr("Not found") : count == 1 ? tr("1 match") : tr("%1 matches").arg(count));
}

void FindBar::setOutcome(const QString& outcome) {
  counting_.stop();
  ui_->outcome->setText(outcome);
  ui_->text->setAccessibleDescription(outcome.isEmpty() ? usualDescription_ : outcome);
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
