// The reference host against the conformance kit: every check must pass.
#include "ReferenceConformanceHost.h"

#include <conformancekit/ConformanceTest.h>

#include <QApplication>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    Brennvik::ReferenceConformanceHost host;
    return Brennvik::Conformance::runAll(host, argc, argv);
}
