#!/usr/bin/python3
# What screen readers are told of the window, as far as Wine passes it on: names, what can be used, and
# what is told of changes; roles it does not pass on. SPDX-License-Identifier: MIT
import windows_scenario as scenario
from catalogue import Voice, catalogue
from wine import LIVE_REGION_CHANGED, NAME_CHANGED

import desktop

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
LOADING = "Läser in röster…"
PROMPT = "Du kan skaffa fler röster när du vill genom att starta Velor Voice Setup igen."


class Accessibility(scenario.Scenario):
    def see_names(self, *, status, ready):
        form = self.probe.form()
        wanted = {
            "frmSelect": (scenario.TITLE, True), "picLogo": (scenario.TITLE, True),
            "lblStatus": (status, True), "cmdInstall": ("Installera", ready),
        }
        met = {
            each.name: self.probe.accessible(each)
            for each in (form, *form.controls) if each.name in wanted
        }
        self.assertEqual(wanted, met)

    def test_everything_has_its_name_and_tells_of_its_changes(self):
        self.choose_language("sv")
        server = self.serve(catalogue(AGNES), hold=True)
        program = self.start()
        self.see_wait_page()
        busy = "document.querySelector('[aria-busy=true]').getAttribute('aria-label')"
        self.see(lambda: self.page.evaluate(busy) == LOADING, "the name of what is busy")
        self.see_names(status=LOADING, ready=False)
        server.release()
        self.see_page()
        self.see_status("")
        self.give_focus()
        desktop.keys("Tab")
        self.see(lambda: self.page.evaluate("document.activeElement.id") == "check7", "the focus")
        told = len(self.probe.told())
        desktop.keys("space")
        self.see_status("1 röst, 75MB")
        self.see_names(status="1 röst, 75MB", ready=True)
        label = self.probe.control("lblStatus").number
        for event in (NAME_CHANGED, LIVE_REGION_CHANGED):
            self.see(lambda event=event: (event, label) in self.probe.told()[told:], f"event {event:x}")
        self.ask_to_close()
        self.see_message(PROMPT)
        self.answer_message()
        self.see_end(program)


if __name__ == "__main__":
    scenario.main()
