#!/usr/bin/python3
# Voices that Windows Installer has really installed, from packages made here. SPDX-License-Identifier: MIT
import subprocess

import windows_scenario as scenario
from catalogue import Voice, catalogue
from wine import new_product_code

AGNES = Voice("7", "Ágnes", "Hungarian", 75_000_000, new_product_code())
BERIT = Voice("12", "Berit", "Norwegian", 135_000_000, new_product_code())
CATALOGUE = catalogue(BERIT, AGNES)

# The least that Windows Installer takes for a product: one file in one component.
PACKAGE = """<?xml version="1.0"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
  <Product Id="{code}" Name="Voice {id}" Version="6.0.1" Language="1033" Manufacturer="Tests"
           UpgradeCode="{upgrade}">
    <Package InstallerVersion="200" Compressed="yes" InstallScope="{scope}"/>
    <Media Id="1" Cabinet="voice.cab" EmbedCab="yes"/>
    <Directory Id="TARGETDIR" Name="SourceDir">
      <Directory Id="ProgramFilesFolder">
        <Directory Id="FOLDER" Name="Voice {id}">
          <Component Id="Voice" Guid="{component}">
            <File Id="Voice" Source="voice.txt"/>
          </Component>
        </Directory>
      </Directory>
    </Directory>
    <Feature Id="Voice" Level="1"><ComponentRef Id="Voice"/></Feature>
  </Product>
</Wix>
"""


class InstalledVoices(scenario.Scenario):
    def install(self, voice, scope="perMachine"):
        source, package = self.folder / f"{voice.id}.wxs", self.folder / f"{voice.id}.msi"
        (self.folder / "voice.txt").write_text("a voice")
        source.write_text(
            PACKAGE.format(
                code=voice.code, id=voice.id, scope=scope,
                upgrade=new_product_code(), component=new_product_code(),
            )
        )
        subprocess.run(["wixl", "-o", package, source], cwd=self.folder, check=True)
        installing = self.prefix.start("msiexec", "/i", f"Z:{package}", "/qn")
        self.assertEqual(0, installing.wait(60))

    def test_one_stands_below_ticked_disabled_and_uncounted_and_is_not_queued(self):
        self.install(BERIT)
        self.serve(CATALOGUE)
        program = self.start()
        # The page gives both boxes the same id; each has its own name all the same.
        boxes = [(AGNES.shown, False, True), (BERIT.shown, True, False)]
        self.see(lambda: self.page.title() == scenario.VOICES_PAGE and self.page.boxes() == boxes,
                 "both voices")
        headings = "Array.from(document.querySelectorAll('h1,h2,h3')).map(e => e.textContent)"
        self.assertEqual(["Available Voices", "Already Installed"], self.page.evaluate(headings))
        self.see_status("")
        self.assertFalse(self.can_install())
        # This name is not for the other's box.
        self.click_on_page("label", BERIT.shown)
        self.tick(AGNES.shown)
        self.see_status("1 voice, 75MB")
        self.press_install()
        self.see_end(program)
        self.assertEqual(b"<queue><item>7</item></queue>", self.prefix.queue.read_bytes())

    def test_with_one_closing_shows_no_prompt(self):
        self.install(AGNES)
        self.serve(CATALOGUE)
        program = self.start()
        self.see_page()
        self.assertEqual([BERIT.shown], self.page.voices())
        self.ask_to_close()
        # A prompt would keep it.
        self.see_end(program)


if __name__ == "__main__":
    scenario.main()
