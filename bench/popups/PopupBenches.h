#pragma once

namespace kifo::bench {

void frameBench();        ///< From the show operation to the first painted frame.
void stretchBench();      ///< The longest single stretch of work on the UI thread.
void wideStretchBench();  ///< The same in a window of 3840 x 2160.
void choosingBench();     ///< Choosing among 500 campaigns.
void cyclesBench();       ///< What 10,000 popups leave behind.

void quickLoadBench();     ///< What `import Kifo` costs before the first popup.
void quickFrameBench();    ///< The first frame in a Qt Quick scene.
void quickStretchBench();  ///< The longest stretch there.
void quickCyclesBench();   ///< What 10,000 popups leave behind there.

}  // namespace kifo::bench
