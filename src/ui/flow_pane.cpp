#include "ui/flow_pane.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

#include "base/text.h"
#include "ui/flow_layout.h"
#include "ui/qt_text.h"

namespace zol {

// --- The chart ---

FlowChartView::FlowChartView(QWidget* parent) : QWidget(parent) {
  setObjectName("flowChart");
  setAttribute(Qt::WA_OpaquePaintEvent);
  setMouseTracking(true);
  resize(0, 0);
}

void FlowChartView::showChart(const Workspace& ws, FlowGraph graph, const FlowOptions& options,
                              Measure measure) {
  graph_ = std::move(graph);
  recording_ = std::make_unique<RecordingCanvas>(metrics_);
  layout_ = DrawChart(ws, graph_, options, measure, *recording_);
  resize(layout_.Width, layout_.Height);
  update();
}

void FlowChartView::clearChart() {
  recording_.reset();
  graph_ = FlowGraph();
  layout_ = ChartLayout();
  resize(0, 0);
  update();
}

QRect FlowChartView::selectedNodeRect() const {
  if (graph_.SelectedNode == 0 || !graph_.Nodes.InRange(graph_.SelectedNode)) return {};
  const FlowNode& n = graph_.Nodes(graph_.SelectedNode);
  return QRect(n.x, n.Y, n.w, n.h);
}

void FlowChartView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  const QRect area = event->rect();
  painter.fillRect(area, Qt::white);
  if (!recording_) return;
  QtFlowCanvas canvas(painter, metrics_);
  canvas.SetSize(layout_.Width, layout_.Height);
  recording_->Replay(canvas, CanvasRect{double(area.left()), double(area.top()),
                                        double(area.right() + 1), double(area.bottom() + 1)});
}

void FlowChartView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return;
  const QPoint p = event->position().toPoint();
  const std::int32_t node = NodeAt(graph_, p.x(), p.y());
  if (node != 0) emit nodeClicked(graph_.Nodes(node).Procedure);
}

void FlowChartView::mouseMoveEvent(QMouseEvent* event) {
  const QPoint p = event->position().toPoint();
  setCursor(NodeAt(graph_, p.x(), p.y()) != 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

// --- The page ---

FlowPane::FlowPane(QWidget* parent) : QWidget(parent) {
  setObjectName("flowPage");
  strip_ = makeOptionStrip();
  strip_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  chart_ = new FlowChartView;
  scroll_ = new QScrollArea(this);
  scroll_->setObjectName("flowScroll");
  scroll_->setWidget(chart_);
  scroll_->setWidgetResizable(false);
  scroll_->setBackgroundRole(QPalette::Base);
  QPalette pal = scroll_->palette();
  pal.setColor(QPalette::Base, Qt::white);
  scroll_->setPalette(pal);
  notice_ = new QLabel(this);
  notice_->setObjectName("flowNotice");
  notice_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  notice_->setAutoFillBackground(true);
  notice_->setPalette(pal);
  QFont bold = notice_->font();
  bold.setBold(true);
  notice_->setFont(bold);
  notice_->hide();
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(strip_);
  layout->addWidget(scroll_, 1);
  layout->addWidget(notice_, 1);
  connect(chart_, &FlowChartView::nodeClicked, this, &FlowPane::nodeClicked);
}

QWidget* FlowPane::makeOptionStrip() {
  auto* strip = new QWidget(this);
  strip->setObjectName("flowOptions");
  auto* row = new FlowLayout(strip);
  auto changed = [this] {
    if (!showing_) emit optionsChanged();
  };
  auto spin = [&](const char* caption, const char* name, int low, int high) {
    row->addWidget(new QLabel(tr(caption), strip));
    auto* box = new QSpinBox(strip);
    box->setObjectName(name);
    box->setRange(low, high);
    row->addWidget(box);
    connect(box, &QSpinBox::valueChanged, this, changed);
    return box;
  };
  horizontal_ = spin("Horizontal spacing", "flowHorizontalSpacing", 10, 100);
  vertical_ = spin("Vertical spacing", "flowVerticalSpacing", 5, 50);
  fontSize_ = spin("Font size (reflects node size)", "flowFontSize", 6, 16);
  row->addSpacing(12);
  auto depth = [&](const char* caption, const char* name) {
    row->addWidget(new QLabel(tr(caption), strip));
    auto* box = new QComboBox(strip);
    box->setObjectName(name);
    box->addItem(tr("A: Automatic"));
    for (int d = 1; d <= 5; ++d) box->addItem(QString::number(d));
    row->addWidget(box);
    connect(box, &QComboBox::currentIndexChanged, this, changed);
    return box;
  };
  depthLeft_ = depth("Depth Left", "flowDepthLeft");
  depthRight_ = depth("Depth Right", "flowDepthRight");
  row->addSpacing(12);
  scheme_ = new QComboBox(strip);
  scheme_->setObjectName("flowColorScheme");
  scheme_->addItems({tr("No Color"), tr("Color By %"), tr("Color By Value")});
  row->addWidget(scheme_);
  connect(scheme_, &QComboBox::currentIndexChanged, this, changed);
  showModule_ = new QCheckBox(tr("Show Module"), strip);
  showModule_->setObjectName("showModuleFlow");
  row->addWidget(showModule_);
  connect(showModule_, &QCheckBox::toggled, this, changed);
  return strip;
}

void FlowPane::setOptions(const FlowOptions& given) {
  const FlowOptions o = ClampFlowOptions(given);
  showing_ = true;
  horizontal_->setValue(o.HorizontalFlow);
  vertical_->setValue(o.VerticalFlow);
  fontSize_->setValue(o.SizeFlow);
  depthLeft_->setCurrentIndex(o.CallDepth[0]);
  depthRight_->setCurrentIndex(o.CallDepth[1]);
  scheme_->setCurrentIndex(o.ColorSchemeFlow - 1);
  showModule_->setChecked(o.ShowModuleFlow != 0);
  showing_ = false;
}

FlowOptions FlowPane::options() const {
  FlowOptions o;
  o.HorizontalFlow = horizontal_->value();
  o.VerticalFlow = vertical_->value();
  o.SizeFlow = fontSize_->value();
  o.CallDepth = {depthLeft_->currentIndex(), depthRight_->currentIndex()};
  o.ColorSchemeFlow = scheme_->currentIndex() + 1;
  o.ShowModuleFlow = showModule_->isChecked() ? 1 : 0;
  return ClampFlowOptions(o);
}

void FlowPane::showChart(const Workspace& ws, FlowGraph graph, Measure measure) {
  notice_->hide();
  scroll_->show();
  chart_->showChart(ws, std::move(graph), options(), measure);
  ensureVisible();
  // The scroll bars take the new size when the events have run.
  QTimer::singleShot(0, this, [this] { ensureVisible(); });
}

void FlowPane::showNotice(const std::string& text) {
  chart_->clearChart();
  QString shown;
  const auto lines = Split(text, "\r\n");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i) shown += "\n";
    shown += Q(lines[i]);
  }
  notice_->setText(shown);
  scroll_->hide();
  notice_->show();
}

bool FlowPane::showsChart() const {
  return chart_->graph().HasChart();
}

void FlowPane::ensureVisible() {
  const QRect box = chart_->selectedNodeRect();
  if (box.isEmpty()) return;
  scroll_->ensureVisible(box.center().x(), box.center().y(), box.width() / 2 + 40,
                         box.height() / 2 + 40);
}

}  // namespace zol
