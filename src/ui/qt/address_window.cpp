#include "ui/qt/address_window.h"

#include "ui/address_dialog_presenter.h"
#include "ui/qt/control_form.h"
#include "ui/qt/form_window.h"
#include "ui/qt/text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include <array>

namespace qx {
namespace {

constexpr std::array<std::string_view, 2> blockNames{"VS", "RG"};

class AddressWindow final : public FormWindow {
public:
  AddressWindow(QWidget* parent, Environment& environment, AddressDialogPresenter& addresses);
  void accept() override;

private:
  void buildBlock(AddressDialogPresenter::Block block);
  void render();

  AddressDialogPresenter& addresses_;
  std::array<QLabel*, 2> standings_{};
  std::array<QPushButton*, 2> takers_{};
};

AddressWindow::AddressWindow(QWidget* parent, Environment& environment, AddressDialogPresenter& addresses)
    : FormWindow(parent, environment, addresses, "Adressen", "DialogAdressen",
                 {captions::cancel, "S&chließen", "Überneh&men"}),
      addresses_(addresses) {
  setObjectName(QStringLiteral("frmAdressen"));
  setWindowTitle(QStringLiteral("Adressen des Vorgangs"));
  for (const AddressDialogPresenter::Block block : AddressDialogPresenter::allBlocks) buildBlock(block);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(notice_);
  layout->addWidget(scroll_, 1);
  auto* row = new QHBoxLayout;
  row->addStretch(1);
  QPushButton* taking = button(QStringLiteral("Überneh&men"), QStringLiteral("cmdOK"));
  QPushButton* cancel = button(addresses_.readOnly() ? QStringLiteral("S&chließen") : toQt(captions::cancel),
                               QStringLiteral("cmdCancel"));
  taking->setEnabled(!addresses_.readOnly());
  connect(taking, &QPushButton::clicked, this, &AddressWindow::accept);
  connect(cancel, &QPushButton::clicked, this, &AddressWindow::reject);
  row->addWidget(taking);
  row->addWidget(cancel);
  layout->addLayout(row);

  connect(form_, &ControlForm::edited, this, &AddressWindow::render);
  render();
  const QSize form = form_->sizeHint();
  memory_.restore(*this, nullptr, {form.width() + 48, form.height() + fontMetrics().lineSpacing() * 12});
}

void AddressWindow::buildBlock(AddressDialogPresenter::Block block) {
  const auto number = static_cast<std::size_t>(block);
  const QString name = toQt(blockNames[number]);
  auto* below = new QWidget(form_);
  auto* layout = new QVBoxLayout(below);
  layout->setContentsMargins(0, 4, 0, 0);
  QLabel* standing = standings_[number] = new QLabel(below);
  standing->setObjectName(QStringLiteral("lbl") + name + QStringLiteral("_Stand"));
  standing->setTextFormat(Qt::PlainText);
  standing->setWordWrap(true);
  standing->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  // Room for two lines, so that the fields stay where they are.
  standing->setMinimumHeight(standing->fontMetrics().lineSpacing() * 2);
  QPushButton* taker = takers_[number] = button(QStringLiteral("Stammadresse übernehmen"),
                                                QStringLiteral("cmd") + name + QStringLiteral("_Stamm"));
  QPushButton* clearer =
      button(QStringLiteral("Leeren"), QStringLiteral("cmd") + name + QStringLiteral("_Leeren"));
  clearer->setEnabled(!addresses_.readOnly());
  connect(taker, &QPushButton::clicked, this, [this, block] {
    form_->commit();
    addresses_.takeStored(block);
    render();
  });
  connect(clearer, &QPushButton::clicked, this, [this, block] {
    form_->commit();
    addresses_.clear(block);
    render();
  });
  auto* row = new QHBoxLayout;
  row->addWidget(taker);
  row->addWidget(clearer);
  row->addStretch(1);
  layout->addWidget(standing);
  layout->addLayout(row);
  form_->addBelow(number, below);
}

void AddressWindow::render() {
  form_->render();
  notice_->setText(toQt(addresses_.notice()));
  notice_->setVisible(!addresses_.notice().empty());
  for (const AddressDialogPresenter::Block block : AddressDialogPresenter::allBlocks) {
    const auto number = static_cast<std::size_t>(block);
    standings_[number]->setText(toQt(addresses_.standing(block)));
    takers_[number]->setEnabled(!addresses_.readOnly() && addresses_.hasStored(block));
  }
}

void AddressWindow::accept() {
  form_->commit();
  FormWindow::accept();
}

} // namespace

bool editJobAddresses(QWidget* parent, Environment& environment, AddressDialogPresenter& addresses) {
  return AddressWindow(parent, environment, addresses).exec() == QDialog::Accepted;
}

} // namespace qx
