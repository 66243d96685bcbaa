SELECT * FROM Daten -- ;
 WHERE (Counter = 1) /* ; */