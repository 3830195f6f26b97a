# Sources of the 2D display model dialog, relative to debugmenucontent/.
set(BRENNVIK_DISPLAYMODEL2D_SOURCES
    displaymodel2d/DisplayModel2DDialog.h
    displaymodel2d/DisplayModel2DDialog.cpp
)
# Units no host sees: the view model holder the dialog inherits, the type
# filter and collector, the 2D row and the plot listing.
set(BRENNVIK_DISPLAYMODEL2D_INTERNAL_SOURCES
    displaymodel2d/ViewModelHolder.h
    displaymodel2d/ViewModelHolder.cpp
    displaymodel2d/DisplayItemTypeFilter.h
    displaymodel2d/DisplayItemTypeFilter.cpp
    displaymodel2d/DisplayItemTypeCollector.h
    displaymodel2d/DisplayItemTypeCollector.cpp
    displaymodel2d/DisplayItemTreeWidgetItem2D.h
    displaymodel2d/DisplayItemTreeWidgetItem2D.cpp
    displaymodel2d/PlotListing.h
    displaymodel2d/PlotListing.cpp
)
# What an installed library shows of it: the exported dialog with the holder
# base and the form it inherits.
set(BRENNVIK_DISPLAYMODEL2D_PUBLIC_HEADERS
    displaymodel2d/ViewModelHolder.h
    displaymodel2d/DisplayModel2DDialog.h
)
set(BRENNVIK_DISPLAYMODEL2D_EXPORTED_CLASSES
    DisplayModel2DDialog
)
set(BRENNVIK_DISPLAYMODEL2D_FORMS
    displaymodel2d/DisplayModel2DDialog.ui
)
