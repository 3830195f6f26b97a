# Sources of the display model dialog, relative to debugmenucontent/.
set(BRENNVIK_DISPLAYMODELDIALOG_SOURCES
    displaymodeldialog/DisplayModelDialog.h
    displaymodeldialog/DisplayModelDialog.cpp
)
set(BRENNVIK_DISPLAYMODELDIALOG_INTERNAL_SOURCES
)
# What an installed library shows of it: the exported dialog and the form it inherits.
set(BRENNVIK_DISPLAYMODELDIALOG_PUBLIC_HEADERS
    displaymodeldialog/DisplayModelDialog.h
)
set(BRENNVIK_DISPLAYMODELDIALOG_EXPORTED_CLASSES
    DisplayModelDialog
)
set(BRENNVIK_DISPLAYMODELDIALOG_FORMS
    displaymodeldialog/DisplayModelDialog.ui
)
