// Texts the library translates at run time that lupdate cannot find in its
// sources; this file is only read by lupdate, never compiled.
//
// The display model dialog's header texts and clone-mode widgets are made in
// code and look their texts up in the form's context through a variable,
// which lupdate does not follow.

#include <QtGlobal>

static const char* const untrackedTexts[] = {
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Cloned display items"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Cloned business object properties"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Cloned display item properties"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Name"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Value"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Display items"),
};
