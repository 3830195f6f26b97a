# Sources of the clone comparison dialog, relative to debugmenucontent/.
set(BRENNVIK_CLONECOMPARISON_SOURCES
    clonecomparison/DebugCloneDisplayModelDialog.h
    clonecomparison/DebugCloneDisplayModelDialog.cpp
)
set(BRENNVIK_CLONECOMPARISON_INTERNAL_SOURCES
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
