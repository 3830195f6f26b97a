# The reference host's widget kit: styled widgets, the tree view context
# menu, depth-first index helpers and the application window helpers.
# Paths are relative to referencehost/. The kit's Q_OBJECT headers live in
# hostcontract/ and are listed so that AUTOMOC sees them.
set(BRENNVIK_REFERENCEHOST_WIDGETKIT_SOURCES
    ${PROJECT_SOURCE_DIR}/hostcontract/BKWidgetInterface.h
    ${PROJECT_SOURCE_DIR}/hostcontract/BKLabel.h
    ${PROJECT_SOURCE_DIR}/hostcontract/BKCheckBox.h
    ${PROJECT_SOURCE_DIR}/hostcontract/BKPushButton.h
    ${PROJECT_SOURCE_DIR}/hostcontract/BKListWidget.h
    ${PROJECT_SOURCE_DIR}/hostcontract/TreeViewContextMenu.h
    ${PROJECT_SOURCE_DIR}/hostcontract/TreeViewIndex.h
    ${PROJECT_SOURCE_DIR}/hostcontract/ApplicationWindow.h
    widgetkit/BKWidgetInterface.cpp
    widgetkit/BKLabel.cpp
    widgetkit/BKCheckBox.cpp
    widgetkit/BKPushButton.cpp
    widgetkit/BKListWidget.cpp
    widgetkit/TreeViewContextMenu.cpp
    widgetkit/TreeViewIndex.cpp
    widgetkit/ApplicationWindow.cpp
)
