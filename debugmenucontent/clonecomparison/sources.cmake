# Sources of the clone comparison dialog, relative to debugmenucontent/.
set(BRENNVIK_CLONECOMPARISON_SOURCES
    clonecomparison/DebugCloneDisplayModelDialog.h
    clonecomparison/DebugCloneDisplayModelDialog.cpp
)
# Units no host sees: the double click on a line of the report.
set(BRENNVIK_CLONECOMPARISON_INTERNAL_SOURCES
    clonecomparison/DifferenceLines.h
    clonecomparison/DifferenceLines.cpp
)
# What an installed library shows of it: the exported dialog and the form it inherits.
set(BRENNVIK_CLONECOMPARISON_PUBLIC_HEADERS
    clonecomparison/DebugCloneDisplayModelDialog.h
)
set(BRENNVIK_CLONECOMPARISON_EXPORTED_CLASSES
    DebugCloneDisplayModelDialog
)
set(BRENNVIK_CLONECOMPARISON_FORMS
    clonecomparison/DebugCloneDisplayModelDialog.ui
)
