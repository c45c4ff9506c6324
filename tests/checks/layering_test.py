"""Plants one violation after another in a small tree and expects each to be found."""
import os
import tempfile
import unittest

import layering

SOUND = {
    "Kifo_iOS_Common_Kit/ports/Port.h": "#include <string>\n",
    "Kifo_iOS_Common_Kit/core/Console.h": '#include "Kifo_iOS_Common_Kit/ports/Port.h"\n',
    "Kifo_iOS_Common_Kit/storage/Store.cpp": "#include <sqlite3.h>\n",
    "Kifo_iOS_Common_Kit/inapp/Item.h": '#include "Kifo_iOS_Common_Kit/core/Console.h"\n',
    "Kifo_iOS_Common_Kit/inapp/views/shared/View.h": "#include <QWidget>\n"
                                              '#include "Kifo_iOS_Common_Kit/inapp/Item.h"\n',
    "Kifo_iOS_Common_Kit/inapp/views/alert/Alert.h": "#include <QWidget>\n",
    "Kifo_iOS_Common_Kit/inapp/quick/Item.h": "#include <QQuickItem>\n",
    "Kifo_iOS_Common_Kit/inapp/popup/State.h": '#include "Kifo_iOS_Common_Kit/inapp/Item.h"\n',
    "Kifo_iOS_Common_Kit/inapp/model/Record.h": "#include <string>\n",
    "Kifo_iOS_Common_Kit/network/Client.h": '#include "Kifo_iOS_Common_Kit/inapp/Item.h"\n',
    "Kifo_iOS_Common_Kit/events/Manager.h": '#include "Kifo_iOS_Common_Kit/network/Client.h"\n',
    "Kifo_iOS_Common_Kit/core/Kifo.h": '#include "Kifo_iOS_Common_Kit/events/Manager.h"\n',
    "platform/linux/Probe.cpp": "#ifdef __linux__\n#endif\n#include <unistd.h>\n"
                                '#include "Kifo_iOS_Common_Kit/core/Console.h"\n',
    "platform/qt/Screen.h": "#include <QtWidgets/QWidget>\n"
                            '#include "Kifo_iOS_Common_Kit/core/Kifo.h"\n',
    "testing/Fake.h": '#include "Kifo_iOS_Common_Kit/ports/Port.h"\n',
    "testing/server/Server.h": "#include <vector>\n",
    "apps/demo/shop/Shop.cpp": '#include <QWidget>\n#include "testing/server/Server.h"\n'
                               '#include "Kifo_iOS_Common_Kit/inapp/views/shared/View.h"\n',
}

# What is added to which file, and what the check must say.
PLANTED = [
    ("Kifo_iOS_Common_Kit/ports/Port.h", '#include "Kifo_iOS_Common_Kit/core/Console.h"', "points up"),
    ("Kifo_iOS_Common_Kit/core/Console.h", '#include "Kifo_iOS_Common_Kit/core/Kifo.h"', "points up"),
    ("Kifo_iOS_Common_Kit/inapp/Item.h", '# include "Kifo_iOS_Common_Kit/events/Manager.h"', "points up"),
    ("Kifo_iOS_Common_Kit/network/Client.h", '#include "Kifo_iOS_Common_Kit/inapp/views/shared/View.h"',
     "built without Qt"),
    ("Kifo_iOS_Common_Kit/core/Kifo.h", '#include "platform/qt/Screen.h"', "built without Qt"),
    ("Kifo_iOS_Common_Kit/inapp/views/shared/View.h", '#include "Kifo_iOS_Common_Kit/network/Client.h"',
     "points up"),
    ("platform/linux/Probe.cpp", '#include "Kifo_iOS_Common_Kit/network/Client.h"', "may not include"),
    ("testing/Fake.h", '#include "Kifo_iOS_Common_Kit/events/Manager.h"', "may not include"),
    ("Kifo_iOS_Common_Kit/core/Console.h", '#include "testing/Fake.h"', "may not include"),
    ("Kifo_iOS_Common_Kit/events/Manager.h", "#include <QString>", "Qt's <QString>"),
    ("platform/linux/Probe.cpp", "#include <QtCore/QString>", "Qt's"),
    ("Kifo_iOS_Common_Kit/inapp/popup/State.h", "#include <QString>", "Qt's"),
    ("Kifo_iOS_Common_Kit/inapp/model/Record.h", '#include "Kifo_iOS_Common_Kit/inapp/Item.h"',
     "points up"),
    ("Kifo_iOS_Common_Kit/inapp/views/shared/View.h",
     '#include "Kifo_iOS_Common_Kit/inapp/views/alert/Alert.h"', "points up"),
    ("Kifo_iOS_Common_Kit/inapp/quick/Item.h",
     '#include "Kifo_iOS_Common_Kit/inapp/views/shared/View.h"', "points up"),
    ("testing/server/Server.h", "#include <QString>", "Qt's"),
    ("Kifo_iOS_Common_Kit/network/Client.h", "#include <curl/curl.h>", "system header"),
    ("Kifo_iOS_Common_Kit/events/Manager.h", "#include <sqlite3.h>", "system header"),
    ("Kifo_iOS_Common_Kit/events/Manager.h", "#ifdef __linux__", "conditional"),
    ("apps/demo/shop/Shop.cpp", "  #  if 1", "conditional"),
    ("Kifo_iOS_Common_Kit/inapp/Item.h", '#include "Item2.h"', "not written from the root"),
    ("Kifo_iOS_Common_Kit/elsewhere/File.h", "#include <string>", "is in no module"),
]


def build(root, files):
    for path, text in files.items():
        os.makedirs(os.path.join(root, os.path.dirname(path)), exist_ok=True)
        with open(os.path.join(root, path), "a", encoding="utf-8") as file:
            file.write(text)


class LayeringTest(unittest.TestCase):
    def violations(self, *files):
        with tempfile.TemporaryDirectory() as root:
            build(root, SOUND)
            for each in files:
                build(root, each)
            return layering.violations(root)

    def test_a_sound_tree_passes(self):
        self.assertEqual(self.violations(), [])

    def test_each_planted_violation_is_the_one_that_is_found(self):
        for path, line, message in PLANTED:
            with self.subTest(path=path, line=line):
                found = self.violations({path: line + "\n"})
                straight = [each for each in found if not each.startswith("circle")]
                self.assertEqual(len(straight), 1, found)
                self.assertIn(path, straight[0])
                self.assertIn(message, straight[0])

    def test_a_circle_within_a_module_is_found(self):
        found = self.violations({
            "Kifo_iOS_Common_Kit/events/A.h": '#include "Kifo_iOS_Common_Kit/events/B.h"\n',
            "Kifo_iOS_Common_Kit/events/B.h": '#include "Kifo_iOS_Common_Kit/events/A.h"\n',
        })
        self.assertEqual(len(found), 1, found)
        self.assertIn("circle", found[0])


if __name__ == "__main__":
    unittest.main()
