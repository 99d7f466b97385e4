#include "history/receipts_record.h"
