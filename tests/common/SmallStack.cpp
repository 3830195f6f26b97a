#include "SmallStack.h"

#include <QThread>

#include <memory>

namespace Brennvik::Test {

void runOnSmallStack(const std::function<void()>& work)
{
    std::unique_ptr<QThread> thread(QThread::create(work));
    thread->setStackSize(256 * 1024);
    thread->start();
    thread->wait();
}

} // namespace Brennvik::Test
