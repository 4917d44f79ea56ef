-- The rows that must exist before the program can start on an empty company.
-- Can be run again: nothing that is already there is touched.
BEGIN;

-- REFID 5: instruction types; 6 is not used.
INSERT OR IGNORE INTO MAS_PULLDOWNVALUES (REFID, PDID, PDLISTNAME, PDLISTDESC) VALUES
  (5, 1, 'Advance', 'Advance'),
  (5, 2, 'Loan', 'Loan'),
  (5, 3, 'Insurance', 'Insurance'),
  (5, 4, 'SSS', 'SSS'),
  (5, 5, 'Group Insurance', 'Group Insurance'),
  (5, 7, 'Periodic Incentive', 'Periodic Incentive');

-- REFID 16: weekday names, Sunday is 1. PDLISTNAME is compared with the English "dddd" name.
INSERT OR IGNORE INTO MAS_PULLDOWNVALUES (REFID, PDID, PDLISTNAME, PDLISTDESC) VALUES
  (16, 1, 'Sunday', 'Sunday'),
  (16, 2, 'Monday', 'Monday'),
  (16, 3, 'Tuesday', 'Tuesday'),
  (16, 4, 'Wednesday', 'Wednesday'),
  (16, 5, 'Thursday', 'Thursday'),
  (16, 6, 'Friday', 'Friday'),
  (16, 7, 'Saturday', 'Saturday');

-- REFID 26: captions of the employee grouping heads.
INSERT OR IGNORE INTO MAS_PULLDOWNVALUES (REFID, PDID, PDLISTNAME, PDLISTDESC) VALUES
  (26, 1, 'Designation', 'Designation'),
  (26, 2, 'Occupation', 'Occupation'),
  (26, 3, 'Department', 'Department'),
  (26, 4, 'Division', 'Division'),
  (26, 5, 'Grade', 'Grade'),
  (26, 6, 'Branch', 'Branch'),
  (26, 7, 'Attendance', 'Attendance');

-- REFID 2000 with PDID 1 or 2 switches on salary heads above 30. Not seeded: it also needs columns
-- ECOMP31 ... and DCOMP31 ... in SLC_SALARYCALC_E/_D, SLC_SALARYRATE_E/_D and SLC_ARREARS_E/_D.

-- One row of options: the program's own defaults.
INSERT INTO MAS_OPTSET (EMPIDCAP, REFNOCAP, SALSTRUCTCAP, DERIVABLETOTCAP, EMPREFNOYN, STARTMONTHYEAR, ENDMONTHYEAR,
  DEFMONTHYEAR, DEFSTRUCTID, DEFREPORTTYPE, ROUNDTYPE, EFFFRMSET, TDSMAR2FEB, CLASSSECURITYN)
SELECT 'Emp ID', 'Ref. No.', 'Sal Structure', 'Derivable Total', 0, 0, 22800, 0, 1, 1, 1, '', 0, 0
WHERE NOT EXISTS (SELECT 1 FROM MAS_OPTSET);

-- One row of features. Every kind of instruction on, so that the deduction preference disables neither Loan nor
-- Advance; advanced management of advances and loans, employee locks and the audit trail on; advanced leave and the mid-month cycle off.
INSERT INTO MAS_OPTSETFEATURE (SIEARNINGYN, ADVANCEYN, LOANYN, INSURANCEYN, SSSYN, GRPINSURANCEYN, LOCKMONTHYN,
  ADVMGALYN, EMPLOCKYN, AUDITTRAILYN, CALCINMIDYN, ADVLEAVEYN, LVSTARTMNYEAR, AUTOPFTYPE, PFSEPARATOR, ATTNCALCTYPE,
  RETIREAGEON, ESIONMNYR, INTFRLNRULE)
SELECT 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 0, 0, 0, 1, '', 1, 1, 0, NULL
WHERE NOT EXISTS (SELECT 1 FROM MAS_OPTSETFEATURE);

-- The ADMIN row: MULTILOGIN is read from it for every user. 0 = rights are not enforced.
INSERT OR IGNORE INTO SEC_USERLIST (UserID, USERNAME, GROUPID, READONLYYN, MULTILOGIN) VALUES (1, 'ADMIN', 1, 0, 0);

-- The company: name and address head every workbook; TDSYN shows the tax section of the instruction master.
INSERT INTO MAS_COMPANY (CMPNAME, ADDRESS, TDSYN)
SELECT 'Kestrel Sample Company', '1 Ledger Street, Pune 411001', 1
WHERE NOT EXISTS (SELECT 1 FROM MAS_COMPANY);

COMMIT;
