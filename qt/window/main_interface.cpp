#include "qt/window/main_interface.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QScopeGuard>
#include <QShortcut>
#include <concepts>
#include <new>
#include <system_error>
#include <utility>

#include "platform/alert.h"
#include "platform/file_manager.h"
#include "platform/save_panel.h"
#include "platform/task.h"
#include "qt/widgets/sentence_box.h"
#include "qt/widgets/visible_text.h"
#include "qt/window/about_box.h"
#include "qt/window/empty_places.h"
#include "qt/window/file_save_panel.h"
#include "ui_main_window.h"

namespace pelmarix::qt {
namespace {

// With less room in the window, lists and report have all of it: 560 points in the usual size of letters.
constexpr int leastLinesWithTimeline = 40;

// The same action; a lister that can't be started ends it in silence, and memory that runs out with an alert.
template <typename Action>
auto guarded(Action action) {
  return [action = std::move(action)](auto... arguments) requires(
      std::invocable<const Action&, decltype(arguments)...>) {
    try {
      action(arguments...);
    } catch (const platform::TaskLaunchError&) {
      return;
    } catch (const std::bad_alloc&) {
      platform::showErrorAlert(platform::lastActionErrorMessage,
                               std::make_error_code(std::errc::not_enough_memory).message());
    }
  };
}

// Calls `action` with the widget that has the focus, if there is something in it to be copied.
template <typename Action>
void withFocused(Action action) {
  QWidget* const focused = QApplication::focusWidget();
  if (auto* outline = qobject_cast<OutlineWidget*>(focused)) return action(*outline);
  if (auto* table = qobject_cast<TableWidget*>(focused)) return action(*table);
  if (auto* text = qobject_cast<PlainTextView*>(focused)) return action(*text);
  if (auto* line = qobject_cast<QLineEdit*>(focused)) return action(*line);
}

bool hasSelection(const QAbstractItemView& list) { return list.selectionModel()->hasSelection(); }
bool hasSelection(const PlainTextView& text) { return !text.selection().isEmpty(); }
bool hasSelection(const QLineEdit& line) { return line.hasSelectedText(); }

bool isEmpty(const QAbstractItemView& list) { return list.model()->rowCount() == 0; }
bool isEmpty(const PlainTextView& text) { return text.text()->empty(); }
bool isEmpty(const QLineEdit& line) { return line.text().isEmpty(); }

}  // namespace

MainInterface::MainInterface(AppDelegate& delegate, const posix::Volume& volume)
    : volume_(volume), ui_(std::make_unique<Ui::MainWindow>()) {
  ui_->setupUi(&window_);
  // A screen reader goes through the parts of a widget in the order of its children, of which a splitter puts
  // each new one in front.
  for (QSplitter* splitter : {ui_->listSplitter, ui_->mainSplitter})
    for (int part = splitter->count() - 1; part >= 0; --part) splitter->widget(part)->lower();
  ui_->menuBar->lower();
  // The lists stand in line, though a button is above one of them only.
  ui_->historyHeading->setMinimumHeight(ui_->showBillOfMaterials->sizeHint().height());
  connectOutlets();
  connectControls();
  connectMenus(delegate);
  connectTimeline();
  connectFocus();
  connectVolumes();
}

MainInterface::~MainInterface() = default;

QMenu& MainInterface::helpMenu() { return *ui_->helpMenu; }

void MainInterface::tellSaved(const std::string& path) { ui_->statusBar->tellSaved(path); }

void MainInterface::connectOutlets() {
  const QString date = QStringLiteral("0000-00-00 00:00:00 +0000");
  const std::vector<ColumnDescription> historyColumns{
      {"NameColumn", QObject::tr("Name"), {"NameCell", "NameItemCell"}, {}},
      {"DateColumn", QObject::tr("Date"), {"DateCell"}, date},
      {"VersionColumn", QObject::tr("Version"), {"VersionCell"}, QStringLiteral("000.0.0.00")},
  };
  const std::vector<ColumnDescription> receiptColumns{
      {"DateColumn", QObject::tr("Date"), {"DateCell"}, date},
      {"NameColumn", QObject::tr("Package"), {"NameCell"}, {}},
  };
  outline_ = std::make_unique<OutlineAdapter>(*ui_->outline, historyColumns, controller_, controller_);
  table_ = std::make_unique<TableAdapter>(*ui_->receiptsTable, receiptColumns, controller_, controller_);
  report_ = std::make_unique<TextAdapter>(*ui_->report);
  skip_ = std::make_unique<CheckBoxAdapter>(*ui_->skipConfigurationData);
  newestLast_ = std::make_unique<CheckBoxAdapter>(*ui_->newestLast);

  controller_.bsvOutlineView = outline_.get();
  controller_.BoMTable = table_.get();
  controller_.outputText = report_.get();
  controller_.skipCheckbox = skip_.get();
  controller_.newestLastCheckbox = newestLast_.get();
  controller_.outputScroller = &reportScroller_;
  controller_.outputFoldClipView = &reportClip_;
  controller_.bsvTopView = &historyPane_;
  controller_.bomTopView = &receiptsPane_;
  controller_.setWindow(&window_);
}

template <typename Sender, typename Signal, typename Action>
void MainInterface::on(Sender* sender, Signal signal, Action action) {
  QObject::connect(sender, signal, &connections_, guarded(std::move(action)));
}

void MainInterface::connectControls() {
  outline_->setDoubleAction(guarded([this] { controller_.doubleClickedItem(outline_.get()); }));
  skip_->setAction(&connections_, guarded([this] {
    controller_.skipNonCheckbox(skip_.get());
    fillTimeline();
  }));
  newestLast_->setAction(&connections_, guarded([this] {
    controller_.newestNonCheckbox(newestLast_.get());
    // The same row, which is another receipt now.
    if (table_->selectedRow() >= 0) tellTimelineOfReceipt();
  }));
  on(ui_->showBillOfMaterials, &QPushButton::clicked, [this] { showBillOfMaterials(); });
  on(ui_->save, &QPushButton::clicked, [this] { save(); });
  on(ui_->biggerText, &QPushButton::clicked, [this] { changeFontSize(1); });
  on(ui_->smallerText, &QPushButton::clicked, [this] { changeFontSize(-1); });
  on(ui_->report, &PlainTextView::zoomRequested, [this](int steps) { changeFontSize(steps); });
}

void MainInterface::changeFontSize(int steps) {
  for (int step = 0; step < steps; ++step) controller_.incFontSize(nullptr);
  for (int step = 0; step > steps; --step) controller_.decFontSize(nullptr);
}

void MainInterface::save() {
  if (!FileSavePanel::bringToFront(window_)) controller_.saveButton(nullptr);
}

void MainInterface::exportLists() {
  if (!FileSavePanel::bringToFront(window_, ui::exportTitle)) controller_.exportLists(nullptr);
}

void MainInterface::showBillOfMaterials() {
  if (sheet_ != nullptr) return;
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  const auto restoreCursor = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
  auto sheet = std::make_unique<BillOfMaterialsSheet>(&window_);
  platform::Segue segue(sheet->controller());
  controller_.prepareForSegue(segue, nullptr);
  const auto cell = [row = static_cast<int>(table_->selectedRow()), this](int column) {
    return ui_->receiptsTable->model()->index(row, column).data().toString();
  };
  if (table_->selectedRow() >= 0) sheet->setReceipt(cell(1), cell(0));
  sheet->present();
  sheet_ = sheet.release();  // deletes itself when it is closed
  tellWhenVolumeIsGone();
}

void MainInterface::tellWhenVolumeIsGone() {
  // Why there is nothing to be listed: the disk that the receipts were read from was pulled out, for one.
  if (!controller_.boms.children.empty() &&
      platform::FileManager::defaultManager().enumeratorAtPath(receiptsFolder) == nullptr)
    SentenceBox::tell(sheet_, "The Mac's volume isn't there any more. What was read from it is still shown.");
}

void MainInterface::findFile() {
  if (search_ != nullptr) return;
  search_ = new FileSearchSheet(&window_, controller_.boms.children);  // deletes itself when it is closed
  on(search_.get(), &FileSearchSheet::fileOpened, [this] { showFoundFile(); });
  search_->open();
}

void MainInterface::showFoundFile() {
  const auto* const found = search_->controller().selectedFile();
  if (found == nullptr || sheet_ != nullptr) return;
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  const auto restoreCursor = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });
  auto sheet = std::make_unique<BillOfMaterialsSheet>(search_);
  platform::Segue segue(sheet->controller());
  search_->controller().prepareForSegue(segue, nullptr);
  sheet->setReceipt(toQString(found->package->name), toQString(description(found->package->installDate)));
  sheet->present();
  sheet->selectLines(found->file.text());
  sheet_ = sheet.release();  // deletes itself when it is closed
  tellWhenVolumeIsGone();
}

void MainInterface::connectMenus(AppDelegate& delegate) {
  ui_->actionFindNext->setShortcuts(findNextKeys());
  ui_->actionFindPrevious->setShortcuts(findPreviousKeys());
  ui_->actionBiggerText->setShortcuts(
      {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});
  on(ui_->actionExport, &QAction::triggered, [this] { exportLists(); });
  on(ui_->actionFindFile, &QAction::triggered, [this] { findFile(); });
  on(ui_->actionSupport, &QAction::triggered, [&delegate] { delegate.openSupport(nullptr); });
  on(ui_->actionSystemUpdates, &QAction::triggered, [&delegate] { delegate.openUpdates(nullptr); });
  on(ui_->actionAbout, &QAction::triggered, [this, &delegate] { showAbout(window_, delegate); });
}

void MainInterface::connectTimeline() {
  timeline_.timelineView = ui_->timeline;
  timeline_.outlineView = outline_.get();
  timeline_.receiptsTable = table_.get();
  ui_->timeline->setDataSource(timeline_);
  const auto tellOfEntry = [this] { timeline_.entrySelected(outline_->selectedItem()); };
  const auto tellOfReceipt = [this] { tellTimelineOfReceipt(); };
  on(ui_->outline->selectionModel(), &QItemSelectionModel::selectionChanged, tellOfEntry);
  on(ui_->receiptsTable->selectionModel(), &QItemSelectionModel::selectionChanged, tellOfReceipt);
  // What was selected before.
  on(ui_->outline, &QAbstractItemView::clicked, tellOfEntry);
  on(ui_->receiptsTable, &QAbstractItemView::clicked, tellOfReceipt);
  const auto* const key = new QShortcut(QKeySequence(QStringLiteral("Alt+T")), &window_);
  on(key, &QShortcut::activated, [this] { ui_->timeline->setFocus(); });
  on(ui_->actionTimeline, &QAction::toggled, [this] { showOrHideTimeline(); });
  on(&window_, &MainWindow::resized, [this] { showOrHideTimeline(); });
  on(ui_->actionCopyPicture, &QAction::triggered,
     [this] { QApplication::clipboard()->setImage(ui_->timeline->toImage()); });
  on(ui_->actionSavePicture, &QAction::triggered, [this] { savePicture(); });
}

void MainInterface::tellTimelineOfReceipt() {
  const std::ptrdiff_t row = table_->selectedRow();
  const auto& receipts = controller_.boms.children;
  timeline_.entrySelected(row < 0 ? nullptr : receipts[static_cast<std::size_t>(row)].get());
}

void MainInterface::showOrHideTimeline() {
  const bool hasEntries = !controller_.histories.empty() || !controller_.boms.children.empty();
  const bool hasRoom = window_.height() >= window_.fontMetrics().lineSpacing() * leastLinesWithTimeline;
  const bool isShown = hasEntries && hasRoom && ui_->actionTimeline->isChecked();
  ui_->timeline->setVisible(isShown);
  ui_->actionTimeline->setEnabled(hasEntries);
  ui_->actionCopyPicture->setEnabled(isShown);
  ui_->actionSavePicture->setEnabled(isShown);
}

void MainInterface::fillTimeline() {
  timeline_.show(controller_.histories, controller_.boms, skip_->state() == platform::stateOn);
}

void MainInterface::savePicture() {
  const std::string title = "Save Picture";
  if (FileSavePanel::bringToFront(window_, title)) return;
  QByteArray png;
  QBuffer buffer(&png);
  ui_->timeline->toImage().save(&buffer, "PNG");
  const std::shared_ptr<platform::SavePanel> panel = platform::SavePanel::make();
  panel->setTitle(title);
  panel->setCanCreateDirectories(true);
  panel->setAllowedFileTypes({"png"});
  panel->setContents({"PNG pictures"});
  panel->beginWithCompletionHandler([png, &chosen = *panel](int response) {
    if (response == platform::modalResponseOK)
      platform::writeToChosenFile(chosen,
                                  {std::string_view(png.data(), static_cast<std::size_t>(png.size()))});
  });
}

void MainInterface::connectVolumes() {
#ifdef Q_OS_MACOS
  ui_->actionOpenVolume->setVisible(false);
#else
  volumeOpener_ = std::make_unique<VolumeOpener>(
      window_, [this] { return controller_.histories.empty() && controller_.boms.children.empty(); });
  on(ui_->actionOpenVolume, &QAction::triggered, [this] { volumeOpener_->offerVolumes(); });
#endif
}

void MainInterface::fillEmptyPlaces() {
  const auto fill = [](auto& list, const std::string& reason, [[maybe_unused]] QWidget& action) {
    list.setPlaceholderText(visibleInOneLine(toQString(reason)));
#ifndef Q_OS_MACOS
    list.showAction(action);
#endif
  };
  if (isEmpty(*ui_->outline)) fill(*ui_->outline, whyThereIsNoHistory(volume_), *ui_->openVolumeForHistory);
  if (isEmpty(*ui_->receiptsTable))
    fill(*ui_->receiptsTable, whyThereAreNoReceipts(volume_), *ui_->openVolumeForReceipts);
}

void MainInterface::connectFocus() {
  ui_->findBar->addPart(*ui_->outline, *ui_->outline);
  ui_->findBar->addPart(*ui_->receiptsTable, *ui_->receiptsTable);
  ui_->findBar->addPart(*ui_->report, *ui_->report);
  // What had the focus last is what is searched.
  on(qApp, &QApplication::focusChanged, [this](QWidget* /*before*/, QWidget* now) {
    if (now != nullptr) ui_->findBar->setPart(*now);
  });
  QObject::connect(ui_->report, &PlainTextView::textChanged, ui_->findBar, &FindBar::countMatches);
  on(ui_->actionCopy, &QAction::triggered, [] { withFocused([](auto& widget) { widget.copy(); }); });
  on(ui_->actionCopyName, &QAction::triggered, [] {
    if (auto* rows = dynamic_cast<RowsView*>(QApplication::focusWidget())) rows->copyNames();
  });
  on(ui_->actionSelectAll, &QAction::triggered,
     [] { withFocused([](auto& widget) { widget.selectAll(); }); });

  const auto update = [this] { updateEditActions(); };
  on(qApp, &QApplication::focusChanged, update);
  on(ui_->outline->selectionModel(), &QItemSelectionModel::selectionChanged, update);
  on(ui_->receiptsTable->selectionModel(), &QItemSelectionModel::selectionChanged, update);
  on(ui_->report, &PlainTextView::selectionChanged, update);
  auto* const sought = ui_->findBar->findChild<QLineEdit*>();
  on(sought, &QLineEdit::selectionChanged, update);
  on(sought, &QLineEdit::textChanged, update);
}

void MainInterface::updateEditActions() {
  const QWidget* const focused = QApplication::focusWidget();
  // An open menu has the focus of what its items work on.
  if (focused == nullptr || focused == ui_->menuBar || focused->window() != &window_) return;
  bool canCopy = false;
  bool canSelect = false;
  withFocused([&](const auto& widget) {
    canCopy = hasSelection(widget);
    canSelect = !isEmpty(widget);
  });
  ui_->actionCopy->setEnabled(canCopy);
  ui_->actionCopyName->setEnabled(canCopy && dynamic_cast<const RowsView*>(focused) != nullptr);
  ui_->actionSelectAll->setEnabled(canSelect);
}

void MainInterface::show() {
  guarded([this] { controller_.viewDidLoad(); })();
  guarded([this] { fillTimeline(); })();
  ui_->actionFindFile->setEnabled(!controller_.boms.children.empty());
  ui_->outline->setFocus();
  window_.show();
  controller_.viewDidAppear();
  fillEmptyPlaces();
  ui_->statusBar->tellOf(volume_.folders(), *ui_->outline, *ui_->receiptsTable);
  outline_->revealLastGroup();
}

}  // namespace pelmarix::qt
