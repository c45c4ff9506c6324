"""Plants one violation after another in what is read of this repository and expects each to be found."""
import pathlib
import unittest

import layering

ROOT = str(pathlib.Path(__file__).resolve().parents[2])
KIT = layering.KIT

# What is added to which file, and what the check must say.
PLANTED = [
    (KIT + "ports/Mutex.h", '#include "Kifo_iOS_Common_Kit/core/Console.h"', "points up"),
    (KIT + "core/Console.h", '#include "Kifo_iOS_Common_Kit/core/Kifo.h"', "points up"),
    (KIT + "inapp/Color.h", '# include "Kifo_iOS_Common_Kit/events/BaseEvent.h"', "points up"),
    (KIT + "inapp/model/RecordFields.h", '#include "Kifo_iOS_Common_Kit/inapp/Color.h"', "points up"),
    (KIT + "inapp/quick/QuickPopup.h",
     '#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertCard.h"', "points up"),
    (KIT + "network/ServiceClient.h", '#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"',
     "built without Qt"),
    (KIT + "core/Kifo.h", '#include "platform/qt/QtPlatform.h"', "built without Qt"),
    ("platform/linux/LinuxPlatform.cpp", '#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"',
     "may not include"),
    ("testing/FakeClock.h", '#include "Kifo_iOS_Common_Kit/events/BaseEvent.h"', "may not include"),
    (KIT + "core/Console.h", '#include "testing/FakeClock.h"', "may not include"),
    (KIT + "events/BaseEvent.h", "#include <QString>", "Qt's <QString>"),
    ("platform/linux/LinuxPlatform.cpp", "#include <QtCore/QString>", "Qt's"),
    (KIT + "inapp/popup/PopupState.h", "#include <QString>", "Qt's"),
    ("testing/server/LocalServer.h", "#include <QString>", "Qt's"),
    (KIT + "network/ServiceClient.h", "#include <curl/curl.h>", "system header"),
    (KIT + "events/BaseEvent.h", "#include <sqlite3.h>", "system header"),
    (KIT + "events/BaseEvent.h", "#ifdef __linux__", "conditional"),
    ("apps/demo/DemoHost.h", "  #  if 1", "conditional"),
    (KIT + "inapp/Color.h", '#include "PopupType.h"', "not written from the root"),
    (KIT + "elsewhere/File.h", "#include <string>", "is in no module"),
]


class LayeringTest(unittest.TestCase):
    def test_each_planted_violation_is_the_one_that_is_found(self):
        for path, line, message in PLANTED:
            with self.subTest(path=path, line=line):
                found = layering.violations(ROOT, path, line + "\n")
                straight = [each for each in found if not each.startswith("circle")]
                self.assertEqual(len(straight), 1, found)
                self.assertIn(path, straight[0])
                self.assertIn(message, straight[0])

    def test_a_circle_within_a_module_is_found(self):
        found = layering.violations(ROOT, KIT + "events/EventSnapshot.h",
                                    '#include "Kifo_iOS_Common_Kit/events/BaseEvent.h"\n')
        self.assertEqual(len(found), 1, found)
        self.assertIn("circle", found[0])


if __name__ == "__main__":
    unittest.main()
