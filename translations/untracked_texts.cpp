// Texts the library translates at run time that lupdate cannot find in its
// sources; this file is only read by lupdate, never compiled.
//
// - The clone-mode widgets are made in code and look their texts up in the
//   form's context through a variable, which lupdate does not follow.
// - DisplayModelDialog has no Q_OBJECT, so its tr() resolves to QDialog::tr
//   and looks its header texts up in the context "QDialog" (lupdate files
//   them under the class name instead, where they are never looked up).

#include <QtGlobal>

static const char* const untrackedTexts[] = {
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Cloned display items"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Cloned business object properties"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Cloned display item properties"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Name"),
    QT_TRANSLATE_NOOP("DisplayModelDialogClass", "Value"),
    QT_TRANSLATE_NOOP("QDialog", "Name"),
    QT_TRANSLATE_NOOP("QDialog", "Value"),
    QT_TRANSLATE_NOOP("QDialog", "Display items"),
};
