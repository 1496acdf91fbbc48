#pragma once
// The bind-bank-card screen ("绑定银行卡"), headless: holder name, identity number, card
// number and SMS code fields, the code button with its 60-second countdown, and a label
// with the member's masked phone, to which the code is sent. Binding runs nine checks in
// a fixed order and shows the first failure; a correct binding shows "绑定成功", marks
// the member as having a card and pops the screen. The bank of the typed number, from
// the local bank-number database, is offered beside the card number field.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/session/base_view_controller.h"
#include "core/session/code_countdown.h"
#include "features/wallet/wallet_texts.h"

namespace qmv {

class MobileCodeNetApi;
class BindBankNetApi;

class QXBindBankCardViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = wallet_texts::kBindTitle;

  // The text fields, in the order the return key walks them.
  enum class Field { Name, IdNumber, CardNumber, Code };

  QXBindBankCardViewController();
  // Stops the timer and both requests; their callbacks never arrive.
  ~QXBindBankCardViewController() override;
  QXBindBankCardViewController(const QXBindBankCardViewController&) = delete;
  QXBindBankCardViewController& operator=(const QXBindBankCardViewController&) = delete;

  const char* title() const { return kTitle; }

  // Field texts, edited by the front end.
  std::string nameText;
  std::string idNumText;
  std::string cardNumText;
  std::string codeText;

  // Four spaces and the member's masked phone, set by viewDidLoad.
  const std::string& phoneLabelText() const { return phoneLabelText_; }
  // "获取验证码" when idle, else the remaining "%.2d:%.2d".
  const std::string& codeButtonTitle() const { return countdown_.title(); }
  bool codeButtonEnabled() const { return countdown_.buttonEnabled(); }
  // The bank of cardNumText by the local bank-number database; "" when unknown.
  std::string bankNameText() const;

  // The screen loaded: fills the phone label and starts the countdown's timer on the
  // Env main loop.
  void viewDidLoad();
  // Leaving the screen stops both of its requests.
  void viewWillDisappear();
  // One timer tick (also driven by the timer itself).
  void intervalTimerCallback() { countdown_.intervalTimerCallback(); }

  // The code button: refused without a word while the countdown runs; else stops a code
  // request still running and asks for a type-0 code for the member's own phone. A
  // correct answer shows "验证码发送成功" and starts the countdown from 60.
  void getCodeAction();
  // The bind button: the checks in order, then bindNet. Returns whether it was sent.
  bool bindAction();
  // Stops a binding still running and sends the four fields as typed.
  void bindNet();
  // The return key on `field`: the field that takes the focus next, or nullopt when the
  // code field ran bindAction.
  std::optional<Field> textFieldShouldReturn(Field field);
  // What an empty field shows: what its check asks for ("请输入持卡人姓名", ...).
  static const char* placeholder(Field field);

  // The phone as the label shows it: texts shorter than 7 characters whole, otherwise
  // the first 3 characters, one "*" per character beyond 7, and the last 4. Characters
  // are UTF-8 code points.
  static std::string maskedPhone(std::string_view phone);

  // After each code request ends, and after each binding ends.
  std::function<void(bool correct)> onCodeFinished;
  std::function<void(bool correct)> onFinished;

 private:
  CodeCountdown countdown_;
  std::string phoneLabelText_;
  std::string codeSessionId_;
  std::shared_ptr<MobileCodeNetApi> codeNet_;
  std::shared_ptr<BindBankNetApi> bindNet_;
};

}  // namespace qmv
