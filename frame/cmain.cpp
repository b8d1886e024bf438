// The facade: hands out the thread's shared objects and closes up after a page.
#include "pelm/cmain.h"

#include <memory>

#include "frame/mod_principal.h"
#include "frame/number_parsing.h"
#include "frame/thread_slots.h"
#include "pelm/base.h"
#include "pelm/calendario.h"
#include "pelm/conn.h"
#include "pelm/error.h"
#include "pelm/manipula_data.h"
#include "pelm/menus.h"

namespace pelm {
namespace {

template <class Shared>
std::shared_ptr<Shared> created_on_first_read(std::shared_ptr<Shared>& slot) {
  if (!slot) slot = std::make_shared<Shared>();
  return slot;
}

}  // namespace

CMain::CMain() { frame::start_thread(); }

CMain::~CMain() {
  try {
    end();
  } catch (const Error&) {
    // Whoever wants to know calls end() first.
  }
}

std::shared_ptr<Menus> CMain::Menu() { return created_on_first_read(frame::thread_slots().menu); }

std::shared_ptr<Calendario> CMain::Calendar() {
  return created_on_first_read(frame::thread_slots().calendar);
}

std::shared_ptr<ManipulaData> CMain::Data() {
  return created_on_first_read(frame::thread_slots().data);
}

std::shared_ptr<Base> CMain::CBase() { return created_on_first_read(frame::thread_slots().base); }

std::shared_ptr<Conn> CMain::CConn() { return created_on_first_read(frame::thread_slots().conn); }

double CMain::myCDbl(std::string_view sValor) const { return parse_point_number(sValor); }

void CMain::end() {
  if (ended_) return;
  ended_ = true;

  frame::ThreadSlots& slots = frame::thread_slots();
  slots.application.reset();
  slots.session.reset();
  slots.server.reset();
  slots.response.reset();
  slots.request.reset();

  // kept: the connections close but the objects stay, with their settings, for the next CMain.
  if (slots.conn) {
    slots.conn->CloseConn();
    slots.conn->CloseConn2();
  }
}

}  // namespace pelm
