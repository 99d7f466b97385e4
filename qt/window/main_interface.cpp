#include "qt/window/main_interface.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <exception>

#include "platform/bundle.h"
#include "qt/services/text_conversion.h"
#include "ui_main_window.h"

namespace pelmarix::qt {
namespace {

/// Runs an action. What it throws ends the action and nothing else.
template <typename Action>
void perform(Action action) {
  try {
    action();
  } catch (const std::exception&) {
    return;
  }
}

/// The pointer says that the program is busy while this lives.
class BusyPointer {
 public:
  BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

/// Empty when the bundle doesn't tell.
QString version() {
  const platform::InfoDictionary info =
      platform::Bundle::mainBundle().infoDictionary().value_or(platform::InfoDictionary());
  const auto found = info.find("CFBundleShortVersionString");
  const auto* text = found == info.end() ? nullptr : std::any_cast<std::string>(&found->second);
  return text == nullptr ? QString() : toQString(*text);
}

void makeHeading(QLabel& label) {
  QFont font = label.font();
  font.setBold(true);
  label.setFont(font);
}

}  // namespace

MainInterface::MainInterface(AppDelegate& delegate)
    : ui_(std::make_unique<Ui::MainWindow>()), windowAdapter_(window_) {
  ui_->setupUi(&window_);
  for (QLabel* heading : {ui_->historyHeading, ui_->receiptsHeading, ui_->reportHeading})
    makeHeading(*heading);
  // Both lists and the report grow with the window, in the proportions that they have.
  ui_->listSplitter->setStretchFactor(0, 3);
  ui_->listSplitter->setStretchFactor(1, 2);
  ui_->mainSplitter->setStretchFactor(0, 3);
  ui_->mainSplitter->setStretchFactor(1, 2);
  connectOutlets();
  connectActions();
  connectMenus(delegate);
  connectFinding();
}

MainInterface::~MainInterface() = default;

QMenu& MainInterface::helpMenu() { return *ui_->helpMenu; }

void MainInterface::connectOutlets() {
  outline_ = std::make_unique<OutlineAdapter>(*ui_->outline,
                                              std::vector<ColumnTemplate>{
                                                  {"NameColumn", QObject::tr("Name")},
                                                  {"DateColumn", QObject::tr("Date")},
                                                  {"VersionColumn", QObject::tr("Version")},
                                              },
                                              std::vector<std::string>{
                                                  "NameCell",
                                                  "DateCell",
                                                  "VersionCell",
                                                  "NameItemCell",
                                              });
  table_ = std::make_unique<TableAdapter>(*ui_->receiptsTable,
                                          std::vector<ColumnTemplate>{
                                              {"DateColumn", QObject::tr("Date")},
                                              {"NameColumn", QObject::tr("Package")},
                                          },
                                          std::vector<std::string>{"DateCell", "NameCell"});
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
  controller_.setWindow(&windowAdapter_);

  outline_->setDataSource(&controller_);
  outline_->setDelegate(&controller_);
  table_->setDataSource(&controller_);
  table_->setDelegate(&controller_);
}

void MainInterface::connectActions() {
  outline_->setDoubleAction([this] { perform([this] { controller_.doubleClickedItem(outline_.get()); }); });
  QObject::connect(ui_->receiptsTable, &TableWidget::rowOpened, &connections_,
                   [this] { showBillOfMaterials(); });
  QObject::connect(ui_->showBillOfMaterials, &QPushButton::clicked, &connections_,
                   [this] { showBillOfMaterials(); });
  skip_->setAction(&connections_, [this] { perform([this] { controller_.skipNonCheckbox(skip_.get()); }); });
  newestLast_->setAction(&connections_,
                         [this] { perform([this] { controller_.newestNonCheckbox(newestLast_.get()); }); });
  QObject::connect(ui_->save, &QPushButton::clicked, &connections_,
                   [this] { perform([this] { controller_.saveButton(nullptr); }); });
  QObject::connect(ui_->biggerText, &QPushButton::clicked, &connections_, [this] { changeFontSize(1); });
  QObject::connect(ui_->smallerText, &QPushButton::clicked, &connections_, [this] { changeFontSize(-1); });
  QObject::connect(ui_->report, &PlainTextWidget::zoomRequested, &connections_,
                   [this](int steps) { changeFontSize(steps); });
}

void MainInterface::changeFontSize(int steps) {
  perform([this, steps] {
    for (int step = 0; step < steps; ++step) controller_.incFontSize(nullptr);
    for (int step = 0; step > steps; --step) controller_.decFontSize(nullptr);
  });
}

void MainInterface::showBillOfMaterials() {
  if (sheet_ != nullptr) return;
  perform([this] {
    auto sheet = std::make_unique<BillOfMaterialsSheet>(&window_);
    {
      const BusyPointer busy;
      platform::Segue segue(sheet->controller());
      controller_.prepareForSegue(segue, nullptr);
      sheet->present();
    }
    sheet_ = sheet.release();  // deletes itself when it is closed
  });
}

void MainInterface::connectMenus(AppDelegate& delegate) {
  const auto onTriggered = [this](QAction* action, auto handler) {
    QObject::connect(action, &QAction::triggered, &connections_, handler);
  };
  onTriggered(ui_->actionSave, [this] { ui_->save->click(); });
  onTriggered(ui_->actionClose, [this] { window_.close(); });
  onTriggered(ui_->actionQuit, [this] { window_.close(); });
  onTriggered(ui_->actionShowBillOfMaterials, [this] { showBillOfMaterials(); });
  onTriggered(ui_->actionExpandAll, [this] { ui_->outline->expandAll(); });
  onTriggered(ui_->actionCollapseAll, [this] { ui_->outline->collapseAll(); });
  onTriggered(ui_->actionBiggerText, [this] { changeFontSize(1); });
  onTriggered(ui_->actionSmallerText, [this] { changeFontSize(-1); });
  ui_->actionBiggerText->setShortcuts(
      {QKeySequence(QStringLiteral("Ctrl++")), QKeySequence(QStringLiteral("Ctrl+="))});

  // A checked item and its check box are one switch: choosing the item clicks the box.
  const auto mirror = [&](QAction* action, QCheckBox* box) {
    action->setChecked(box->isChecked());
    QObject::connect(box, &QCheckBox::stateChanged, action,
                     [action](int state) { action->setChecked(state == Qt::Checked); });
    onTriggered(action, [box] { box->click(); });
  };
  mirror(ui_->actionSkipConfigurationData, ui_->skipConfigurationData);
  mirror(ui_->actionNewestLast, ui_->newestLast);

  onTriggered(ui_->actionSupport, [&delegate] { perform([&] { delegate.openSupport(nullptr); }); });
  onTriggered(ui_->actionSystemUpdates, [&delegate] { perform([&] { delegate.openUpdates(nullptr); }); });
  onTriggered(ui_->actionAbout, [this] { showAbout(); });
}

void MainInterface::showAbout() {
  auto* box = new QMessageBox(&window_);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setWindowTitle(QObject::tr("About Pelmarix"));
  box->setTextFormat(Qt::PlainText);
  box->setText(QStringLiteral("Pelmarix ") + version());
  box->setInformativeText(
      QObject::tr("Tells what has been installed on a Mac.\n\n"
                  "Copyright © 2026 The Pelmarix authors\n"
                  "Free software under the MIT License"));
  box->open();
}

void MainInterface::connectFinding() {
  ui_->findBar->setTarget(ui_->outline, ui_->outline);
  // What had the focus last is what is searched, and what is copied from.
  QObject::connect(qApp, &QApplication::focusChanged, &connections_, [this](QWidget*, QWidget* now) {
    if (now == ui_->outline) ui_->findBar->setTarget(ui_->outline, ui_->outline);
    if (now == ui_->receiptsTable) ui_->findBar->setTarget(ui_->receiptsTable, ui_->receiptsTable);
    if (now == ui_->report) ui_->findBar->setTarget(ui_->report, ui_->report);
  });
  const auto onTriggered = [this](QAction* action, auto handler) {
    QObject::connect(action, &QAction::triggered, &connections_, handler);
  };
  onTriggered(ui_->actionFind, [this] { ui_->findBar->open(); });
  onTriggered(ui_->actionFindNext, [this] { ui_->findBar->findNext(); });
  onTriggered(ui_->actionFindPrevious, [this] { ui_->findBar->findPrevious(); });
  onTriggered(ui_->actionCopy, [this] {
    QWidget* focus = QApplication::focusWidget();
    if (focus == ui_->outline) ui_->outline->copyRows();
    if (focus == ui_->receiptsTable) ui_->receiptsTable->copyRows();
    if (focus == ui_->report) ui_->report->copy();
    if (auto* line = qobject_cast<QLineEdit*>(focus)) line->copy();
  });
  onTriggered(ui_->actionSelectAll, [this] {
    QWidget* focus = QApplication::focusWidget();
    if (focus == ui_->outline) ui_->outline->selectAll();
    if (focus == ui_->receiptsTable) ui_->receiptsTable->selectAll();
    if (focus == ui_->report) ui_->report->selectAll();
    if (auto* line = qobject_cast<QLineEdit*>(focus)) line->selectAll();
  });
}

void MainInterface::show() {
  controller_.viewDidLoad();
  ui_->outline->setFocus();
  window_.show();
  controller_.viewDidAppear();
  outline_->revealLastGroup();
}

}  // namespace pelmarix::qt
