// The fake platform's world and what a test does to it.
//
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <map>
#include <stdexcept>

#include "core/attempt.h"
#include "core/text.h"
#include "platform/shared/window/event_queue.h"
#include "tests/fake_platform/fake.h"

namespace fake {
namespace {

struct ScheduledTimer {
  unsigned milliseconds;
  unsigned due;
  std::function<void()> step;
};

/// In the order of starting.
std::map<unsigned, ScheduledTimer>& Timers() {
  static std::map<unsigned, ScheduledTimer> timers;
  return timers;
}

std::unique_ptr<World>& Holder() {
  static std::unique_ptr<World> world;
  return world;
}

std::filesystem::path NativePath(const std::string& corePath) {
  const std::string native = core::ReplaceAll(corePath, "\\", "/");
  return std::filesystem::path(std::u8string(native.begin(), native.end()));
}

void Finish(const std::string& address, std::optional<std::string> bytes) {
  auto& loads = TheWorld().pendingLoads;
  const auto load =
      std::ranges::find_if(loads, [&](const auto& one) { return one->address == address; });
  if (load == loads.end()) throw std::logic_error("nothing loads " + address);
  const auto found = *load;
  loads.erase(load);
  found->finish(std::move(bytes));
}

}  // namespace

World::World() {
  const auto make = [&](const std::filesystem::path& below) {
    std::filesystem::create_directories(folder.Path() / below);
    return support::CorePath(folder.Path() / below);
  };
  programFolder = make("Program Files/Velor Software/Velor Voice Setup");
  specialFolders[26] = make("Roaming");
  specialFolders[35] = make("ProgramData");
}

void World::WriteFile(const std::string& corePath, std::string_view bytes) const {
  support::WriteBytes(NativePath(corePath), bytes);
}

bool World::HasFile(const std::string& corePath) const {
  return std::filesystem::exists(NativePath(corePath));
}

std::string World::ReadFile(const std::string& corePath) const {
  return support::ReadBytes(NativePath(corePath));
}

World& TheWorld() {
  if (!Holder()) Reset();
  return *Holder();
}

void Reset() {
  Timers().clear();
  Holder() = std::make_unique<World>();
}

Form& TheForm() { return *TheWorld().loadedForms.at(0); }

Control& ControlNamed(const std::string& name) {
  for (const auto& control : TheForm().Controls()) {
    if (control->name == name) return *control;
  }
  throw std::out_of_range("no control " + name);
}

void FinishLoad(const std::string& address, const std::string& bytes) { Finish(address, bytes); }

void FailLoad(const std::string& address) { Finish(address, std::nullopt); }

void HandleEvents() {
  auto& events = TheWorld().events;
  while (!events.empty()) {
    const auto event = std::move(events.front());
    events.pop_front();
    event();
  }
}

}  // namespace fake

namespace platform {

void Post(std::function<void()> step) {
  fake::TheWorld().events.push_back([step = std::move(step)] { core::Attempt(step); });
}

unsigned StartTimer(unsigned milliseconds, std::function<void()> step) {
  static unsigned last = 0;
  fake::Timers()[++last] = {milliseconds, milliseconds, std::move(step)};
  return last;
}

void StopTimer(unsigned timer) { fake::Timers().erase(timer); }

}  // namespace platform

namespace fake {

bool IsTimerRunning() { return !Timers().empty(); }

void GoOff() {
  for (const auto& [number, timer] : std::map(Timers())) platform::Notify(timer.step);
}

void Pass(int milliseconds) {
  HandleEvents();
  for (int now = 0; now < milliseconds; ++now) {
    for (const auto& [number, unused] : std::map(Timers())) {
      const auto timer = Timers().find(number);
      if (timer == Timers().end() || --timer->second.due > 0) continue;
      timer->second.due = timer->second.milliseconds;
      platform::Notify(timer->second.step);
    }
    HandleEvents();
  }
}

bool Browser::Follow(const std::string& address) {
  if (const auto handler = beforeNavigate) {
    if (core::AttemptOr(false, [&] { return handler(address); })) return false;
  }
  if (ownPages.IsRefused(address, true)) return false;
  shown.push_back(address);
  return true;
}

void Browser::Lose() {
  inputs.reset();
  platform::Notify(pageLost);
}

void Browser::Tick(const std::string& id, bool checked) {
  for (auto& input : inputs.value()) {
    if (input.id != id) continue;
    input.checked = checked;
    return;
  }
  throw std::out_of_range("no box " + id);
}

void Control::Click() {
  if (enabled) platform::Notify(onClick);
}

void Form::Resize(float width, float height) {
  clientWidth = width;
  clientHeight = height;
  platform::Notify(onResize);
}

void Form::Minimise() {
  minimised = true;
  platform::Notify(onResize);
}

void Form::Restore() {
  minimised = false;
  platform::Notify(onResize);
}

}  // namespace fake
