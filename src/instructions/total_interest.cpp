#include "instructions/total_interest.h"

#include "frame/session.h"

namespace ktl {

void RefreshTotalInterest(Session& session) {
  session.Cn.Execute(
      "UPDATE  INS_ADVLOAN SET INTAMT=TMPINTAMT FROM INS_ADVLOAN A,(SELECT  "
      "EMI.EMPID,EMI.SITYPE,EMI.SERIALNO,SUM(EMI.INTAMT) TMPINTAMT  FROM    INS_ADVLOAN A,INS_MASTER "
      "M,INS_EMIDETAIL EMI "
      "WHERE A.SINAME = M.SINAME AND A.SITYPE = M.SITYPE AND A.EMPID = EMI.EMPID AND A.SERIALNO = "
      "EMI.SERIALNO          "
      "AND A.SITYPE = EMI.SITYPE AND M.REDUCINGBALYN = 1 GROUP BY EMI.EMPID,EMI.SITYPE,EMI.SERIALNO) TMP "
      "WHERE   "
      "A.EMPID = TMP.EMPID AND A.SERIALNO = TMP.SERIALNO          AND A.SITYPE = TMP.SITYPE   AND "
      "TMPINTAMT<>INTAMT ");
}

}  // namespace ktl
