N££a= 0)Oß==Þ*/ORM   Da 8  *=1/* /* 8  Nž’šß=="Sag ""HalOM Olo"ÞÝ= ""Ha= ""LalOM Olo"½Þ*/OR Nž’šßOM Olo"zÞÝ= ""LalOM Ol=="Sag;
 W3 "U"H"Sagÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿÿ= N