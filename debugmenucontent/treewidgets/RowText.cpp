#include "RowText.h"

#include <boost/lexical_cast.hpp>

namespace Brennvik {

QString rowIndexText(int index)
{
    return QString::fromStdString(boost::lexical_cast<std::string>(index));
}

} // namespace Brennvik
