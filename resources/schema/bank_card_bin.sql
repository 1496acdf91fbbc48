-- Shipped bank identification numbers: the leading digits of a card number and its bank.
CREATE TABLE bank_card_bin (card_bin VARCHAR PRIMARY KEY, bank_name VARCHAR);
.mode csv
.import --skip 1 @DATA_DIR@/bank_card_bin.csv bank_card_bin
