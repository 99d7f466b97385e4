#include "receipts/bom_receipt_record.h"
