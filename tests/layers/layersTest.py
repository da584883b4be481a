"""The check of the layers on small trees: a sound one, and ones with a planted fault each."""
import contextlib
import io
import pathlib
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "scripts"))
import layers

SOUND = {
    "include/KxMath/KxProfile.h": "",
    "include/KxInspect/KxTrain.h": "#include <KxMath/KxProfile.h>\n",
    "src/CMakeLists.txt": "add_library(KxMath SHARED io/records.cpp)\n",
    "src/rounding/bounds.h": "#include <vector>\n",
    "src/io/records.h": "",
    "src/io/records.cpp": '#include "records.h" // its own\n#include "rounding/bounds.h"\n#include "KxMath/KxProfile.h"\n',
    "src/cloud/filters.h": '#include "io/records.h"\n',
    "src/profile/joint.h": '#include "cloud/filters.h"\n',
    "inspect/CMakeLists.txt": "add_library(KxInspect SHARED train/pass.cpp)\n"
                              "target_link_libraries(KxInspect PUBLIC KxMath)\n",
    "inspect/train/pass.h": "#include <KxInspect/KxTrain.h>\n",
    "inspect/train/pass.cpp": '#include "inspect/train/pass.h"\n',
    "inspect/wheel/measures.h": '#include "inspect/train/pass.h"\n',
    "report/CMakeLists.txt": "add_library(kxreport STATIC page.cpp)\n"
                             "target_link_libraries(kxreport PUBLIC KxInspect)\n",
    "report/page.cpp": "#include <KxInspect/KxTrain.h>\n",
    "simulator/train.h": "#include <KxMath/KxProfile.h>\n",
    "tools/kxmath/CMakeLists.txt": "add_executable(kxmath main.cpp)\ntarget_link_libraries(kxmath PRIVATE kxreport)\n",
    "tools/kxmath/main.cpp": '#include "inspect/train/pass.h"\n',
    "tools/kxmath/simulate/command.h": '#include "simulator/train.h"\n',
    "tests/cloud/filtersTest.cpp": '#include "src/cloud/filters.h"\n',
    "build-release/copy.cpp": "",
}


def check(changes):
    """Exit code and output of the check of the sound tree with these files changed."""
    with tempfile.TemporaryDirectory() as folder:
        for name, text in {**SOUND, **changes}.items():
            path = pathlib.Path(folder, name)
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        with contextlib.redirect_stdout(io.StringIO()) as output:
            code = layers.main([folder])
        return code, output.getvalue().strip()


class Layers(unittest.TestCase):
    def test_sound_tree(self):
        self.assertEqual(check({}), (0, ""))

    def test_planted_faults(self):
        for changes, finding in (
            ({"src/io/records.h": '#include "cloud/filters.h"\n'},
             "src/io/records.h includes src/cloud/filters.h: input and output may not use core"),
            ({"src/io/records.h": '  #  include "../cloud/filters.h"\n'},
             "src/io/records.h includes src/cloud/filters.h: input and output may not use core"),
            ({"inspect/train/pass.h": '#include "rounding/bounds.h"\n'},
             "inspect/train/pass.h includes src/rounding/bounds.h: measuring may not use ground"),
            ({"inspect/train/pass.h": '#include "tests/cloud/filtersTest.cpp"\n'},
             "inspect/train/pass.h includes tests/cloud/filtersTest.cpp, which belongs to no layer"),
            ({"inspect/train/pass.h": '#include "nowhere.h"\n'},
             "inspect/train/pass.h includes nowhere.h, which belongs to no layer"),
            ({"report/page.cpp": '#include "inspect/train/pass.h"\n'},
             "report/page.cpp includes inspect/train/pass.h: pages may not use measuring"),
            ({"tools/kxmath/train/command.h": '#include "simulator/train.h"\n'},
             "tools/kxmath/train/command.h includes simulator/train.h: commands may not use simulator"),
            ({"src/cloud/filters.h": '#include "profile/joint.h"\n'},
             "circle src/cloud -> src/profile -> src/cloud\n"
             "    src/cloud/filters.h includes src/profile/joint.h\n"
             "    src/profile/joint.h includes src/cloud/filters.h"),
            ({"inspect/train/pass.h": '#include "inspect/scan/grid.h"\n',
              "inspect/scan/grid.h": '#include "inspect/wheel/measures.h"\n'},
             "circle inspect/scan -> inspect/wheel -> inspect/train -> inspect/scan\n"
             "    inspect/scan/grid.h includes inspect/wheel/measures.h\n"
             "    inspect/wheel/measures.h includes inspect/train/pass.h\n"
             "    inspect/train/pass.h includes inspect/scan/grid.h"),
            ({"extra/new.h": ""}, "extra: belongs to no layer"),
            ({"src/misc/new.h": ""}, "src/misc: belongs to no layer"),
            ({"tests/io/CMakeLists.txt": 'set(src "${PROJECT_SOURCE_DIR}/src")\nadd_executable(t ${src}/io/records.cpp)\n'},
             "src/io/records.cpp is listed in src/CMakeLists.txt and tests/io/CMakeLists.txt"),
            ({"report/CMakeLists.txt": "add_library(kxreport STATIC page.cpp ../tools/kxmath/main.cpp)\n",
              "tools/kxmath/CMakeLists.txt": "# main.cpp\n"},
             "tools/kxmath/main.cpp is listed in report/CMakeLists.txt"),
            ({"src/io/lost.cpp": ""}, "src/io/lost.cpp is listed in no CMake file"),
            ({"cmake/links.cmake": "target_link_libraries(KxInspect\n  PUBLIC KxMath PRIVATE $<BUILD_INTERFACE:kxreport>)\n"},
             "cmake/links.cmake: KxInspect links kxreport: measuring may not use pages"),
            ({"cmake/links.cmake": "add_library(Kx::Report ALIAS kxreport)\ntarget_link_libraries(KxMath PRIVATE Kx::Report)\n"},
             "cmake/links.cmake: KxMath links Kx::Report: core may not use pages"),
        ):
            with self.subTest(finding):
                self.assertEqual(check(changes), (1, finding))


if __name__ == "__main__":
    unittest.main()
