#!/usr/bin/python3
# The browser's engine is killed while its page is shown. SPDX-License-Identifier: MIT
import os
import signal

import scenario
from catalogue import Voice, catalogue

import accessible

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000)
BERIT = Voice("8", "Berit", "Norwegian", 60_000_000)
QUEUE = b"<queue><item>8</item></queue>"


class PageLost(scenario.Scenario):
    def kill_engine(self, program):
        engines = [
            number
            for number, name in scenario.children(program.process.pid)
            if name == "WebKitWebProces"  # as much of the name as the kernel keeps
        ]
        self.assertEqual(1, len(engines))
        os.kill(engines[0], signal.SIGKILL)

    def test_the_page_comes_back_with_the_ticks_of_its_file(self):
        self.installation.queue.write_bytes(QUEUE)
        self.serve(catalogue(AGNES, BERIT))
        program = self.start()
        self.see_page(program)
        self.tick(program, AGNES.shown)
        self.see_status(program, "2 voices, 135MB")
        self.kill_engine(program)
        self.see(lambda: not accessible.is_enabled(program.button()), "Install to be disabled")
        self.see_page(program)
        self.see_ticked(program, BERIT.shown)
        self.see_status(program, "1 voice, 60MB")
        self.assertEqual(QUEUE, self.installation.queue.read_bytes())
        self.tick(program, AGNES.shown)
        self.see_status(program, "2 voices, 135MB")
        self.press_install(program)
        self.see_end(program)
        self.see_nobody_left()
        self.assertEqual(
            b"<queue><item>7</item><item>8</item></queue>", self.installation.queue.read_bytes()
        )

    def test_a_page_that_is_lost_again_stays_lost_for_a_while_and_the_window_closes(self):
        self.serve(catalogue(AGNES))
        program = self.start()
        self.see_page(program)
        self.kill_engine(program)
        self.see(lambda: not program.page(), "the page to be lost")
        self.see_page(program)
        self.tick(program, AGNES.shown)
        self.see_status(program, "1 voice, 75MB")
        self.kill_engine(program)
        self.see_status(program, "")
        self.assertFalse(accessible.is_enabled(program.button()))
        self.close_with_prompt(program)
        self.assertFalse(self.installation.queue.exists())


if __name__ == "__main__":
    scenario.main()
