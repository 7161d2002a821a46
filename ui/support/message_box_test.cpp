// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/support/message_box.h"

#include <functional>
#include <gtest/gtest.h>
#include <utility>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace tallow {
namespace {

/// Waits for the next message box and runs a callback on it.
class BoxVisitor {
 public:
  explicit BoxVisitor(std::function<void(QMessageBox&)> act) : act_(std::move(act)) {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      timer_.stop();
      act_(*box);
    });
    timer_.start(5);
  }

 private:
  std::function<void(QMessageBox&)> act_;
  QTimer timer_;
};

/// Shows a message, runs a callback on its message box, and returns the answer.
MessageAnswer Shown(const Message& message, const std::function<void(QMessageBox&)>& act) {
  const BoxVisitor visitor(act);
  return ShowMessageBox(message, nullptr);
}

TEST(MessageBox, TextTitleIconAndButtonsComeFromTheMessage) {
  const auto look = [](QMessageBox& box) {
    EXPECT_EQ(box.text(), "It is <b>over</b>.\nReally.");
    EXPECT_EQ(box.windowTitle(), "WinAMP Not Found");
    EXPECT_EQ(box.icon(), QMessageBox::Critical);
    EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
    box.button(QMessageBox::Ok)->click();
  };
  EXPECT_EQ(Shown({.text = "It is <b>over</b>.\nReally.",
                   .title = "WinAMP Not Found",
                   .icon = MessageIcon::kCritical},
                  look),
            MessageAnswer::kOk);
}

TEST(MessageBox, TheDefaultTitleIsTallowAndTheDefaultIconIsNone) {
  const auto look = [](QMessageBox& box) {
    EXPECT_EQ(box.windowTitle(), "Tallow");
    EXPECT_EQ(box.icon(), QMessageBox::NoIcon);
    box.button(QMessageBox::Ok)->click();
  };
  Shown({.text = "Couldn't start WinAMP"}, look);
}

TEST(MessageBox, EachMessageIconShowsTheMatchingQtIcon) {
  const std::pair<MessageIcon, QMessageBox::Icon> icons[] = {
      {MessageIcon::kInformation, QMessageBox::Information},
      {MessageIcon::kQuestion, QMessageBox::Question},
  };
  for (const auto& [icon, picture] : icons)
    Shown({.text = "x", .icon = icon}, [picture = picture](QMessageBox& box) {
      EXPECT_EQ(box.icon(), picture);
      box.button(QMessageBox::Ok)->click();
    });
}

TEST(MessageBox, AChoiceIsTheClickedButtonAndClosingChoosesNothing) {
  const auto choose = [](const std::function<void(QMessageBox&)>& act) {
    const BoxVisitor visitor(act);
    return ChooseInMessageBox("Which one?", {"Use It As It Is", "Salvage It"}, nullptr);
  };
  EXPECT_EQ(choose([](QMessageBox& box) {
              EXPECT_EQ(box.text(), "Which one?");
              EXPECT_EQ(box.windowTitle(), "Tallow");
              ASSERT_EQ(box.buttons().size(), 2);
              EXPECT_EQ(box.buttons()[1]->text(), "Salvage It");
              box.buttons()[1]->click();
            }),
            1U);
  EXPECT_EQ(choose([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }), 0U);
  EXPECT_EQ(choose([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }), std::nullopt);
  EXPECT_EQ(choose([](QMessageBox& box) { box.close(); }), std::nullopt);
}

TEST(MessageBox, TheClickedButtonIsTheAnswer) {
  const std::pair<QMessageBox::StandardButton, MessageAnswer> answers[] = {
      {QMessageBox::Yes, MessageAnswer::kYes},
      {QMessageBox::No, MessageAnswer::kNo},
      {QMessageBox::Cancel, MessageAnswer::kCancel},
  };
  for (const auto& [button, answer] : answers)
    EXPECT_EQ(Shown({.text = "x", .buttons = MessageButtons::kYesNoCancel},
                    [button = button](QMessageBox& box) {
                      EXPECT_EQ(box.standardButtons(),
                                QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
                      box.button(button)->click();
                    }),
              answer);
}

TEST(MessageBox, EscapeGivesCancelElseNoElseOk) {
  const auto escape = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); };
  EXPECT_EQ(Shown({.text = "x", .buttons = MessageButtons::kYesNoCancel}, escape),
            MessageAnswer::kCancel);
  EXPECT_EQ(Shown({.text = "x", .buttons = MessageButtons::kYesNo}, escape), MessageAnswer::kNo);
  EXPECT_EQ(Shown({.text = "x"}, escape), MessageAnswer::kOk);
}

TEST(MessageBox, DismissingADismissibleBoxGivesCancel) {
  const Message message{.text = "?", .buttons = MessageButtons::kYesNo, .can_be_dismissed = true};
  const auto press = [](Qt::Key key) {
    return [key](QMessageBox& box) { QTest::keyClick(&box, key); };
  };
  EXPECT_EQ(Shown(message, press(Qt::Key_Escape)), MessageAnswer::kCancel);
  EXPECT_EQ(Shown(message, [](QMessageBox& box) { box.close(); }), MessageAnswer::kCancel);
  EXPECT_EQ(Shown(message, [](QMessageBox& box) { box.button(QMessageBox::Yes)->click(); }),
            MessageAnswer::kYes);
  EXPECT_EQ(Shown(message, [](QMessageBox& box) { box.button(QMessageBox::No)->click(); }),
            MessageAnswer::kNo);
  EXPECT_EQ(Shown(message,
                  [](QMessageBox& box) {
                    EXPECT_EQ(box.standardButtons(), QMessageBox::Yes | QMessageBox::No);
                    box.close();
                  }),
            MessageAnswer::kCancel);
}

}  // namespace
}  // namespace tallow
